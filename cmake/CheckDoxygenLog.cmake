# Run after Doxygen by the target docs: fails, printing the log, when
# Doxygen's warning log is missing or not empty.
#   cmake -DLOG=<warning log> -DHTML=<output folder> -P CheckDoxygenLog.cmake
if(NOT DEFINED LOG)
  message(FATAL_ERROR "CheckDoxygenLog.cmake: pass -DLOG=<the Doxygen warning log>")
endif()
if(NOT EXISTS "${LOG}")
  message(FATAL_ERROR "Doxygen wrote no warning log at ${LOG}")
endif()
file(READ "${LOG}" log)
if(NOT log STREQUAL "")
  string(REGEX MATCHALL "(warning|error):" found "${log}")
  list(LENGTH found count)
  message("${log}")
  message(FATAL_ERROR "Doxygen reported ${count} warning(s) or error(s) in the API reference, "
                      "listed above and in ${LOG}")
endif()
message(STATUS "API reference written without warnings: ${HTML}/index.html")
