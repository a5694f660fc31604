# Calls the program and compares exit code, standard output and standard error with what is expected.
#
#   cmake [-DEMULATOR=<command>] -DPROGRAM=<file> -DVERSION=<version> -DSCRATCH=<folder> -P calls.cmake
cmake_minimum_required(VERSION 3.25)

include("${CMAKE_CURRENT_LIST_DIR}/expect.cmake")

set(bad "no such form, or a value out of its range (87)")
set(hint "Run with --help for more information.\n")
string(ASCII 239 187 191 byte_order_mark)
if(NOT EMULATOR)  # with windows a toast is one
  set(toast_text "[toast] Tïtle\n      | body\n")
endif()

expect("two lines, the second no time" CODE 1
  ARGS time parse - INPUT "2013-03-28T12:34:56+01:00\nnonsense\n"
  OUT "2013-03-28T12:34:56+01:00 -> 2013-03-28T11:34:56Z, ticks 130089440960000000, Thursday\n"
  ERR "line 2: 'nonsense': ${bad}\n")
expect("CR LF, an empty line, a last line without end" CODE 1
  ARGS time parse - INPUT "20130328T123456Z\r\n\r\n2013-03-31 00-05:30"
  OUT "20130328T123456Z -> 2013-03-28T12:34:56Z, ticks 130089476960000000\n2013-03-31 00-05:30 -> \
2013-03-31T05:30:00Z, ticks 130091814000000000, Sunday\n"
  ERR "line 2: '': ${bad}\n")
expect("a byte order mark" CODE 0
  ARGS time parse - INPUT "${byte_order_mark}1601-01-01T00Z\n"
  OUT "1601-01-01T00Z -> 1601-01-01T00:00:00Z, ticks 0\n")
expect("arguments: no such day, brackets, other scripts" CODE 1
  ARGS time parse 2013-02-31T00:00:00Z "[2013,a]" "ü€𝄞" 2013-03-28T00Z
  OUT "2013-03-28T00Z -> 2013-03-28T00:00:00Z, ticks 130089024000000000\n"
  ERR "argument 1: '2013-02-31T00:00:00Z': no such day or time in the calendar, the fields are 2013-02-31T00:00:00Z \
(87)\nargument 2: '[2013,a]': ${bad}\nargument 3: 'ü€𝄞': ${bad}\n")
expect("tick counts" CODE 1
  ARGS time format 0 0x1CE2BA845733000 abc 0x -5 9223372036854775808
  OUT "0 -> 1601-01-01T00:00:00Z\n0x1CE2BA845733000 -> 2013-03-28T11:34:56Z\n"
  ERR "argument 3: 'abc': no tick count (87)\nargument 4: '0x': no tick count (87)\nargument 5: '-5': ${bad}\n\
argument 6: '9223372036854775808': no tick count (87)\n")
expect("fields" CODE 0 ARGS time format --fields 2013 3 28 12 34 56 OUT "2013-03-28T12:34:56Z\n")
expect("the same time in two zones" CODE 0
  ARGS time compare 2013-03-28T12:34:56+01:00 2013-03-28T11:34:56Z
  OUT "2013-03-28T12:34:56+01:00 is the same time as 2013-03-28T11:34:56Z (0)\n")
expect("the earlier" CODE 0
  ARGS time compare 2013-03-28T12:34:56+01:00 2013-03-28T12:34:56Z
  OUT "2013-03-28T12:34:56+01:00 is earlier than 2013-03-28T12:34:56Z (-1)\n")
expect("the later" CODE 0
  ARGS time compare 2013-03-28T12Z 2013-03-28T12+00:01
  OUT "2013-03-28T12Z is later than 2013-03-28T12+00:01 (1)\n")
expect("a comparison with no time" CODE 1
  ARGS time compare 2013-03-28T12Z 2013-03-28T12X ERR "argument 2: '2013-03-28T12X': ${bad}\n")
expect("log records" CODE 1
  ARGS --log time compare 20 2013-03-28T12Z
  ERR "[entry] vlSysCompareISO8601\n[entry] vlSysISO8601ToSystemTime\n[entry] vlSysParseISO8601Date\n\
[exit] vlSysParseISO8601Date (87)\n[exit] vlSysISO8601ToSystemTime (87)\n\
[exit] vlSysCompareISO8601: returns nRet = 0x57\n[entry] vlSysISO8601ToSystemTime\n[entry] vlSysParseISO8601Date\n\
[exit] vlSysParseISO8601Date (87)\n[exit] vlSysISO8601ToSystemTime (87)\n[entry] vlSysISO8601ToLargeInteger\n\
[entry] vlSysISO8601ToSystemTime\n[entry] vlSysParseISO8601Date\n[exit] vlSysParseISO8601Date (87)\n\
[exit] vlSysISO8601ToSystemTime (87)\n[exit] vlSysISO8601ToLargeInteger (87)\nargument 1: '20': ${bad}\n")
expect("a toast that another thread hides" CODE 0 ARGS toast show "Tïtle" body --stay --seconds 0.05
  OUT "The toast has ended: hidden (3)\n" ERR "${toast_text}")
expect("the mode" CODE 0 ARGS uimode OUT "desktop (1)\n")
expect("a toast for less than no time" CODE 2 ARGS toast show a b --seconds -1
  ERR "hostkit: --seconds: Value -1 not in range 0.000000 to 86400.000000\n${hint}")
expect("the installer's question, on a workstation" CODE 0 ARGS tse OUT "Terminal Services: no (0)\n")
expect("the version" CODE 0 ARGS --version OUT "hostkit ${VERSION}\n")
expect("no command" CODE 2 ERR "hostkit: A subcommand is required\n${hint}")
expect("no such command" CODE 2 ARGS tiem parse 2013 ERR "hostkit: 'tiem' is not understood.\n${hint}")
expect("no such option" CODE 2 ARGS time now --lokal ERR "hostkit: '--lokal' is not understood.\n${hint}")
expect("neither ticks nor fields" CODE 2 ARGS time format ERR "hostkit: TICKS or --fields is required\n${hint}")

# JSON: results and failures alike are objects on standard output. CMake's parser decides whether they are.
call(ARGS --json time parse - INPUT "2013-03-28T12:34:56+01:00\nnon \"sense\"\n2013-02-31T00Z\n")
compare("json" "exit code" 1 "${run_code}")
compare("json" "standard error" "" "${run_err}")
string(REGEX REPLACE "\n$" "" lines "${run_out}")
string(REPLACE "\n" ";" lines "${lines}")
list(LENGTH lines count)
compare("json" "number of lines" 3 "${count}")
foreach(check IN ITEMS "0 line 1" "0 text 2013-03-28T12:34:56+01:00" "0 utc 2013-03-28T11:34:56Z"
    "0 ticks 130089440960000000" "0 dayOfWeek Thursday" "1 line 2" "1 text non \"sense\"" "1 code 87"
    "2 fields 2013-02-31T00:00:00Z" "2 code 87")
  string(REGEX MATCH "^([0-9]) ([^ ]+) (.*)$" matched "${check}")
  set(index ${CMAKE_MATCH_1})
  set(member ${CMAKE_MATCH_2})
  set(expected "${CMAKE_MATCH_3}")
  list(GET lines ${index} object)
  string(JSON value ERROR_VARIABLE problem GET "${object}" ${member})
  compare("json, line ${index}" "${member}" "${expected}" "${value}")
endforeach()

# The tour has the clock in it: its shape is tested, and that nothing in it failed.
call(ARGS tour)
compare("tour" "exit code" 0 "${run_code}")
compare("tour" "standard error" "" "${run_err}")
foreach(pattern IN ITEMS "\n  In UTC +20[0-9][0-9]-[0-9-]+T[0-9:]+Z\n" "\n  This machine's zone +[^\n]+UTC[+-][0-9:]+\n"
    "T12:00[+]01:00 and [^ ]+T06:00-05:00 +the same time\n"
    "-02-30T00:00:00Z +has fields, but no tick count: .*[(]87[)]\n"
    "record 8 +\\[exit\\] vlSysISO8601ToSystemTime [(]0[)]\n"
    "\n  Before it arrives +0 copies in [^\n]+\n[^\n]+\n  While it is held +[1-9][^\n]+\n"
    "\n  While all of them are held +[1-9][^\n]+\n  Let go +0 copies in [^\n]+\n"
    "\n  Paths, as the type it has +REG_MULTI_SZ 'C:.Data' 'D:.More'\n" "and in the 32-bit view +REG_SZ '32-bit'\n"
    "The key with all below it +done [(]0[)]\n" "made a toast object\n  A hide request +is refused"
    "\n  Terminal Services +(yes [(]1[)]|no [(]0[)])\n" "plain strings were let go\n  Let go +[1-9][^\n]+\n"
    "\n  Two different passwords +\"The two passwords differ.\"\n  The password field afterwards +holds 36 spaces\n"
    "\n  While the member is held +[1-9][^\n]+\n  Let go +0 copies in [^\n]+\n$")
  if(NOT run_out MATCHES "${pattern}")
    message(SEND_ERROR "tour: nothing matches ${pattern} in\n${run_out}")
  endif()
endforeach()
