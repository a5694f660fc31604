# The example program's reader of machines, for a target that has no other part of that program.
function(vl_add_machinefile target)
  find_path(VL_nlohmann_INCLUDE_DIR nlohmann/json.hpp REQUIRED)
  target_sources(${target} PRIVATE
    ${PROJECT_SOURCE_DIR}/examples/hostkit/machinefile.cpp
    ${PROJECT_SOURCE_DIR}/examples/hostkit/text.cpp)
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/examples)
  target_include_directories(${target} SYSTEM PRIVATE ${VL_nlohmann_INCLUDE_DIR})
endfunction()
