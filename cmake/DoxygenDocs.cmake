# The target docs: runs Doxygen on the configured Doxyfile and fails, printing
# what Doxygen said, when Doxygen fails, writes anything to its output (with
# QUIET = YES that is a problem with the configuration, such as an unknown
# setting), or leaves a warning log that is not empty.
#   cmake -DDOXYGEN=<doxygen> -DDOXYFILE=<Doxyfile> -DLOG=<warning log> -DHTML=<output folder>
#         -P DoxygenDocs.cmake
foreach(variable DOXYGEN DOXYFILE LOG HTML)
  if(NOT DEFINED ${variable})
    message(FATAL_ERROR "DoxygenDocs.cmake: pass -D${variable}=...")
  endif()
endforeach()

file(REMOVE "${LOG}")
execute_process(COMMAND "${DOXYGEN}" "${DOXYFILE}" RESULT_VARIABLE result OUTPUT_VARIABLE output
                ERROR_VARIABLE output)
if(EXISTS "${LOG}")
  file(READ "${LOG}" log)
else()
  set(log "")
endif()
string(STRIP "${output}${log}" said)
if(NOT result EQUAL 0 OR NOT said STREQUAL "")
  string(REGEX MATCHALL "(warning|error):" found "${said}")
  list(LENGTH found count)
  message("${said}")
  message(FATAL_ERROR "Doxygen reported ${count} warning(s) or error(s) in the API reference (exit status "
                      "${result}), listed above; the warnings are also in ${LOG}")
endif()
message(STATUS "API reference written without warnings: ${HTML}/index.html")
