# Writes the source with the commit, where that has changed: COMMIT, or else what git says of the folder SOURCES. An
# archive of the sources may lie in a working tree of something else, whose commit says nothing about it.
if(COMMIT STREQUAL "")
  set(COMMIT "unknown")
  find_program(GIT git)
  if(GIT)
    execute_process(COMMAND ${GIT} -C ${SOURCES} rev-parse --show-prefix
                    RESULT_VARIABLE status OUTPUT_VARIABLE prefix OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
    if(status EQUAL 0 AND prefix STREQUAL "")
      execute_process(COMMAND ${GIT} -C ${SOURCES} describe --always --abbrev=12 --exclude=* --dirty=\ with\ changes
                      RESULT_VARIABLE status OUTPUT_VARIABLE described OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
      if(status EQUAL 0)
        set(COMMIT "${described}")
      endif()
    endif()
  endif()
endif()

file(CONFIGURE OUTPUT ${OUTPUT} CONTENT [[#include "Commit.h"

const char* const build_information::kCommit = "@COMMIT@";
]] ESCAPE_QUOTES @ONLY)
