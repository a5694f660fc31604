# Accounts, SIDs and drives: of the machine at hand on Windows, of a described one elsewhere, which goes off-line.
#
#   cmake [-DEMULATOR=<command>] -DPROGRAM=<file> -DSCRATCH=<folder> -DMACHINE=<file> -P accounts.cmake
cmake_minimum_required(VERSION 3.25)

include("${CMAKE_CURRENT_LIST_DIR}/expect.cmake")

set(state "${SCRATCH}/accounts.reg")
set(unknown "nothing is known of it (2)\n")
if(EMULATOR)
  set(refusal "on Windows the machine is the one at hand, and can't be described\n\
Run with --help for more information.\n")
  expect("a machine file" CODE 2 ARGS --machine x.json drives ERR "hostkit: --machine: ${refusal}")
  expect("off-line" CODE 2 ARGS --offline drives ERR "hostkit: --offline: ${refusal}")
else()
  # Both caches, empty, and the profile of an account that was renamed.
  set(software [[HKEY_LOCAL_MACHINE\SOFTWARE]])
  set(domain_sid S-1-5-21-1004336348-1177238915-682003330)
  file(WRITE "${state}" "Windows Registry Editor Version 5.00\n\n[${software}\\Velorin\\System\\DomainCache]\n\n"
    "[${software}\\Velorin\\System\\UserCache]\n\n[${software}\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList\\"
    "${domain_sid}-1104]\n\"ProfileImagePath\"=\"C:\\\\Users\\\\alison\"\n")
  set(OPTIONS --state "${state}" --machine "${MACHINE}")
endif()

# What both machines have.
expect("a SAM name" CODE 0 ARGS user convert "CORP\\jörg \\x" --domain D OUT "CORP\\jörg \\x -> CORP\\jörg \\x\n")
expect("a name alone" CODE 0 ARGS --json user convert al --domain "D x" OUT "{\"id\":\"al\",\"user\":\"al\",\"domain\":\"D\"}\n")
expect("an unknown suffix" CODE 1 ARGS user convert x@no.example ERR "'x@no.example': ${unknown}")
call(ARGS user process)
string(REGEX REPLACE "\\\\.*\n$" "" domain "${run_out}")
string(REGEX REPLACE "^.*\\\\|\n$" "" user "${run_out}")
call(ARGS sid)
string(REGEX MATCH "^S-1-5-21[0-9-]+" sid "${run_out}")
compare("the process's SID" "all of it" "${sid}\n" "${run_out}")
expect("it by name" CODE 0 ARGS sid "${domain}\\${user}" OUT "${domain}\\${user} -> ${sid}\n")
expect("it, looked up" CODE 0 ARGS user sid "${user}" --domain "${domain}" OUT "${domain}\\${user} -> ${sid}\n")
expect("a SID's text" CODE 0 ARGS --json sid ${sid} OUT "{\"text\":\"${sid}\",\"sid\":\"${sid}\"}\n")
expect("no SID" CODE 1 ARGS sid S-1-x ERR "'S-1-x': that is no SID (1337)\n")
expect("no account" CODE 1 ARGS --json sid nix
  OUT "{\"name\":\"nix\",\"error\":\"there is no such account\",\"code\":1332}\n")
expect("no account, with a cache" CODE 1 ARGS user sid nix --domain "${domain}" ERR "'${domain}\\nix': ${unknown}")
call(ARGS drives)
if(NOT run_out MATCHES "^C: fixed\n([D-Z]: fixed\n)*C: holds the system\n$")
  message(SEND_ERROR "drives: ${run_out}${run_err}")
endif()
if(EMULATOR)
  return()
endif()

# Each call is a process of its own; the registry's file is all that they share.
compare("who it is" "name and SID" "CORP alice ${domain_sid}-1104" "${domain} ${user} ${sid}")
expect("the session" CODE 0 ARGS user current OUT "CORP\\jörg\n")
set(converted CODE 0 ARGS user convert jörg@corp.example OUT "jörg@corp.example -> CORP\\jörg\n")
set(found CODE 0 ARGS user sid backup --domain CORP OUT "CORP\\backup -> ${domain_sid}-2001\n")
expect("nothing stored yet" CODE 1 ARGS --offline user sid backup --domain CORP ERR "'CORP\\backup': ${unknown}")
foreach(network IN ITEMS "" --offline)
  set(OPTIONS ${OPTIONS} ${network})
  expect("a principal name ${network}" ${converted})
  expect("a SID ${network}" ${found})
endforeach()
expect("the first name, by the cached SID" CODE 0 ARGS user initial-name alice --domain CORP
  OUT "CORP\\alice -> alison\n")
expect("no cache asked" CODE 1 ARGS sid LAB\\carol ERR "'LAB\\carol': the domain does not answer (1789)\n")

# Machines that lack something, and descriptions of none.
function(described text)
  file(WRITE "${SCRATCH}/machine.json" "${text}")
  set(OPTIONS --state "${state}" --machine "${SCRATCH}/machine.json")
  expect("${text}" ${ARGN})
endfunction()
described([[{"missing": ["Advapi32.dll!LsaLookupNames2"]}]] ${found})
described([[{"missing": ["secur32.dll"]}]] CODE 1 ARGS user convert a@corp.example ERR "'a@corp.example': ${unknown}")
described([[{"policy": "0xC0000022"}]] CODE 1 ARGS user sid backup ERR "'backup': access is denied (5)\n")
described([[{"drives": {"D": "cdrom"}, "environment": {"SystemDrive": null}}]] CODE 1 ARGS drives ERR
  "fixed drives: there is no such drive (15)\nsystem drive: the environment variable is not set (203)\n")
function(broken text words)
  described("${text}" CODE 1 ARGS drives ERR "hostkit: ${SCRATCH}/machine.json: ${words}\n")
endfunction()
file(WRITE "${SCRATCH}/machine.json" "{\n  \"network\": }")
set(OPTIONS --machine "${SCRATCH}/machine.json")
call(ARGS drives)
if(NOT run_err MATCHES "machine.json: parse error at line 2, column 14: .*unexpected '}'")
  message(SEND_ERROR "broken JSON: ${run_err}")
endif()
broken([[{"drive": {}}]] "there is no member 'drive'")
broken([[{"policy": "0", "policy": "1"}]] "an object has two members 'policy'")
broken([[{"process": "CORP\\alice"}]] "process: there is no such account")
broken([[{"missing": ["Secur32.dll!X"]}]] "missing[0]: the module has no entry point of that name")
broken([[{"domains": [{"name": "A", "sid": "S-1-5-21-1", "users": [{"name": "a", "rid": -1}]}]}]]
  "domains[0].users[0].rid: wants a whole number from 0 to 4294967295, not '-1'")
