/// Machines in files, for the stand-in: a computer, its domains and their users, its network, drives and environment.
///
/// The file is JSON, an object with any of these members; what is left out is as the computer at hand has it.
///
///   "computer"     the computer's name
///   "domains"      a list of objects:
///                    "name"       the NETBIOS name; the computer's own name gives its account domain another SID
///                    "sid"        its SID as text
///                    "reachable"  whether it answers; true if left out
///                    "users"      a list of objects: "name", and either "rid", a number, or "sid", a text;
///                                 "upn", the principal name (alice@corp.example), may be left out
///   "network"      "alive" or "down"
///   "process"      who runs the program: "DOMAIN\\user", or a SID as text
///   "session"      who is logged on: "DOMAIN\\user", or null for nobody
///   "drives"       all drives: "fixed", "removable", "remote", "cdrom" or "ramdisk" by letter
///   "environment"  variables by name: a text, or null for one that is not set; others stay
///   "missing"      modules and entry points that are not there: "Secur32.dll", "Secur32.dll!TranslateNameW"
///   "policy"       the status with which the security authority refuses to be opened: "0xC0000022"
#ifndef HOSTKIT_MACHINEFILE_H
#define HOSTKIT_MACHINEFILE_H

#include <string>
#include <vector>

/// The names of domains other than the computer's own.
using DescribedDomains = std::vector<std::wstring>;

/// Makes the stand-in's machine the one that `file` describes. Throws std::runtime_error that names the file and the
/// line and column, or the member, that is wrong.
DescribedDomains describeMachine(const std::string& file);

#endif
