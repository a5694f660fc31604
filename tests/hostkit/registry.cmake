# Registry commands: on the machine's registry on Windows, on a file elsewhere, with one set of expectations.
#
#   cmake [-DEMULATOR=<command>] -DPROGRAM=<file> -DSCRATCH=<folder> -P registry.cmake
cmake_minimum_required(VERSION 3.25)

include("${CMAKE_CURRENT_LIST_DIR}/expect.cmake")

set(refused "missing, or could not be opened, read or changed")
set(none "the key is missing, can't be opened, or has none (-1)\n")
set(hint "Run with --help for more information.\n")
set(key [[HKCU\Software\VlHostkitTest]])
set(view_key [[HKLM\SOFTWARE\VlHostkitTest]])
set(narrow_key [[HKLM\SOFTWARE\Wow6432Node\VlHostkitTest]])
set(at_key "'${key}'")

if(EMULATOR)
  expect("a state file on Windows" CODE 2 ARGS reg keys HKCU --state x.reg
    ERR "hostkit: --state: on Windows the registry is the machine's own, not a file\n${hint}")
else()
  set(OPTIONS --state "${SCRATCH}/registry.reg")
  file(REMOVE "${SCRATCH}/registry.reg")
endif()
foreach(left IN ITEMS "${key}" "${view_key}" "${narrow_key}")
  call(ARGS reg delete ${left} --recursive --view 64)
endforeach()

# Each type is written, and read by its own function and by that of the type that it turns out to have.
expect("a string, by the long name" CODE 0
  ARGS reg write [[hkey_current_user\Software\VlHostkitTest]] "a 1" "ü€𝄞 \"q\" \\ [x]" --type string
  OUT "a 1: REG_SZ 'ü€𝄞 \"q\" \\ [x]' written\n")
expect("a binary" CODE 0 ARGS reg write ${key} b 00fF7f --type binary OUT "b: REG_BINARY 00ff7f written\n")
expect("a dword" CODE 0 ARGS reg write ${key} d 0xFFFFFFFE --type dword OUT "d: REG_DWORD 4294967294 written\n")
expect("a list" CODE 0 ARGS reg write ${key} m one [a,b] time --type multi
  OUT "m: REG_MULTI_SZ 'one' '[a,b]' 'time' written\n")
expect("an empty list" CODE 0 ARGS reg write ${key} n --type multi OUT "n: REG_MULTI_SZ empty written\n")
foreach(check IN ITEMS "a 1|string|REG_SZ 'ü€𝄞 \"q\" \\ [x]'" "b|binary|REG_BINARY 00ff7f"
    "d|dword|REG_DWORD 4294967294" "m|multi|REG_MULTI_SZ 'one' '[a,b]' 'time'" "n|multi|REG_MULTI_SZ empty")
  string(REGEX MATCH "^([^|]+)[|]([^|]+)[|](.*)$" matched "${check}")
  set(name "${CMAKE_MATCH_1}")
  set(type ${CMAKE_MATCH_2})
  set(out "${name}: ${CMAKE_MATCH_3}\n")
  expect("read ${name}" CODE 0 ARGS reg read ${key} ${name} OUT "${out}")
  expect("read ${name} as ${type}" CODE 0 ARGS reg read ${key} ${name} --type ${type} OUT "${out}")
endforeach()
expect("json" CODE 0 ARGS --json reg read ${key} m --view 64
  OUT "{\"key\":\"HKCU\\\\Software\\\\VlHostkitTest\",\"view\":\"64\",\"name\":\"m\",\"type\":\"REG_MULTI_SZ\",\
\"texts\":[\"one\",\"[a,b]\",\"time\"]}\n")

# What is refused, by the library and before it.
expect("another type" CODE 1 ARGS reg read ${key} m --type string
  ERR "${at_key}, 'm': the value has another type; it is stored as REG_MULTI_SZ (-4)\n")
expect("more bytes than a dword has" CODE 1 ARGS reg read ${key} m --type dword
  ERR "${at_key}, 'm': ${refused}; it is stored as REG_MULTI_SZ (-1)\n")
expect("no such value" CODE 1 ARGS reg read ${key} ERR "${at_key}, unnamed value: ${refused} (-1)\n")
expect("no such root" CODE 1 ARGS reg keys HKCU/Software
  ERR "'HKCU/Software': no registry key: it begins with HKLM, HKCU, HKCR, HKU or HKCC (87)\n")
expect("a qword" CODE 1 ARGS reg write ${key} q 1 --type qword
  ERR "${at_key}, 'q': the library has no function that writes this type (87)\n")
foreach(value IN ITEMS -1 4294967296 0x100000000 1x)
  expect("no dword: ${value}" CODE 1 ARGS reg write ${key} q ${value} --type dword
    ERR "${at_key}, 'q': no number from 0 to 4294967295 (87)\n")
endforeach()
foreach(value IN ITEMS 0 0g 0x0 "00 1")
  expect("no bytes: ${value}" CODE 1 ARGS reg write ${key} q ${value} --type binary
    ERR "${at_key}, 'q': no pairs of hex digits (87)\n")
endforeach()
expect("a root" CODE 1 ARGS reg delete --recursive [[HKCU\]] ERR "'HKCU\\': a root is not deleted here (87)\n")

# Lists, the two views, and deletion.
expect("values" CODE 0 ARGS reg list ${key}
  OUT "a 1: REG_SZ\nb: REG_BINARY\nd: REG_DWORD\nm: REG_MULTI_SZ\nn: REG_MULTI_SZ\n")
expect("values of a type" CODE 0 ARGS reg list ${key} --type-filter multi OUT "m: REG_MULTI_SZ\nn: REG_MULTI_SZ\n")
expect("no subkeys" CODE 1 ARGS reg keys ${key} ERR "${at_key}: ${none}")
call(ARGS reg write "${key}\\Sub\\Deep" x 1 --type dword)
expect("subkeys" CODE 0 ARGS reg keys ${key} OUT "Sub\n")
call(ARGS reg write ${view_key} v wide --type string --view 64)
call(ARGS reg write ${view_key} v narrow --type string --view 32)
expect("the 64-bit view" CODE 0 ARGS reg read ${view_key} v --view 64 OUT "v: REG_SZ 'wide'\n")
expect("the 32-bit view" CODE 0 ARGS reg read ${narrow_key} v OUT "v: REG_SZ 'narrow'\n")
expect("a value, and the way there" CODE 0 ARGS --log reg delete ${view_key} --value v --view 32 OUT "v: deleted\n"
  ERR "[entry] vlRegDeleteValue\n[trace] vlRegDeleteValue : RegDeleteValue returns 0x0\n\
[exit] vlRegDeleteValue : ret=(0)\n")
expect("a value in the other view stays" CODE 0 ARGS reg list ${view_key} --view 64 OUT "v: REG_SZ\n")
expect("a key with subkeys" CODE 1 ARGS reg delete ${key} ERR "${at_key}: ${refused} (-1)\n")
expect("what lies below" CODE 0 ARGS reg delete ${key} --children-only OUT "${key}: all subkeys deleted\n")
expect("a key" CODE 0 ARGS reg delete ${key} OUT "${key}: deleted\n")
expect("nothing is left" CODE 1 ARGS reg list ${key} ERR "${at_key}: ${none}")
# A key is deleted in the program's own view, whatever the call says.
if(POINTER_BYTES EQUAL 4)
  set(views "${view_key}")
else()
  set(views "${view_key}" "${narrow_key}")
endif()
foreach(left IN LISTS views)
  expect("clean up ${left}" CODE 0 ARGS reg delete ${left} --recursive --view 64 OUT "${left}: deleted\n")
endforeach()
