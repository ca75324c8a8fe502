# pairwise_library(NAME [CORE] SOURCES ... [LINKS ...])
#
# One library a folder. Its links are PUBLIC and mirror what the folder may include. A CORE library
# becomes a part of libpwcore.so, whose symbols the module and the host share; all others are hidden
# from the outside, and get at a CORE library only through libpwcore.so, so that there is one copy of
# it and of the state that it holds.
function(pairwise_library name)
  cmake_parse_arguments(ARG "CORE" "" "SOURCES;LINKS" ${ARGN})
  if(ARG_CORE)
    add_library(${name} OBJECT ${ARG_SOURCES})
  else()
    add_library(${name} STATIC ${ARG_SOURCES})
    set_target_properties(${name} PROPERTIES CXX_VISIBILITY_PRESET hidden
                                             VISIBILITY_INLINES_HIDDEN ON)
    list(TRANSFORM ARG_LINKS REPLACE "^(base|platform|platform_portable|platform_posix|framework)$" "pwcore")
    list(REMOVE_DUPLICATES ARG_LINKS)
  endif()
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${ARG_LINKS})
endfunction()
