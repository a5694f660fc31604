# Calls of the program and what is expected of them. Wants EMULATOR, PROGRAM and SCRATCH, as calls.cmake takes them, and
# takes OPTIONS, which all calls have.

# Sets `run_code`, `run_out` and `run_err` for the call. INPUT is what standard input holds.
function(call)
  cmake_parse_arguments(PARSE_ARGV 0 ARG "" "INPUT" "ARGS")
  file(WRITE "${SCRATCH}/input.txt" "${ARG_INPUT}")
  execute_process(COMMAND ${EMULATOR} ${PROGRAM} ${OPTIONS} ${ARG_ARGS} INPUT_FILE "${SCRATCH}/input.txt" TIMEOUT 60
    RESULT_VARIABLE run_code OUTPUT_VARIABLE run_out ERROR_VARIABLE run_err)
  return(PROPAGATE run_code run_out run_err)
endfunction()

function(compare case what expected actual)
  if(NOT "x${actual}" STREQUAL "x${expected}")
    message(SEND_ERROR "${case}: ${what}\n--- expected\n${expected}\n--- actual\n${actual}\n---")
  endif()
endfunction()

# OUT and ERR are all of it, line ends included.
function(expect case)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "INPUT;CODE;OUT;ERR" "ARGS")
  call(ARGS ${ARG_ARGS} INPUT "${ARG_INPUT}")
  compare("${case}" "exit code" "${ARG_CODE}" "${run_code}")
  compare("${case}" "standard output" "${ARG_OUT}" "${run_out}")
  compare("${case}" "standard error" "${ARG_ERR}" "${run_err}")
endfunction()
