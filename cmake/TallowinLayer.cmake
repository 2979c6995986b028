# tallowin_layer(FOLDER SOURCES ... LINKS ...)
#
# A folder of src/ as a library tallowin_FOLDER (slashes become underscores). Its headers are
# included as "FOLDER/Header.h", and that path resolves only for targets that link the library:
# each layer has an include folder of its own with nothing but links to the layer's headers in it.
# So a wrong include does not compile, instead of being found in a review.
function(tallowin_layer folder)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS;PRIVATE_LINKS")
  string(REPLACE "/" "_" target "tallowin_${folder}")
  set(root "${CMAKE_BINARY_DIR}/layers/${target}")
  file(REMOVE_RECURSE "${root}")
  file(MAKE_DIRECTORY "${root}/${folder}")
  file(GLOB headers CONFIGURE_DEPENDS RELATIVE "${CMAKE_SOURCE_DIR}/src/${folder}"
       "${CMAKE_SOURCE_DIR}/src/${folder}/*.h")
  foreach(header IN LISTS headers)
    file(CREATE_LINK "${CMAKE_SOURCE_DIR}/src/${folder}/${header}" "${root}/${folder}/${header}"
         SYMBOLIC)
  endforeach()

  if(arg_SOURCES)
    list(TRANSFORM arg_SOURCES PREPEND "${CMAKE_SOURCE_DIR}/src/${folder}/")
    add_library(${target} STATIC ${arg_SOURCES})
    target_include_directories(${target} PUBLIC "${root}")
    target_link_libraries(${target} PUBLIC ${arg_LINKS} PRIVATE tallowin_flags ${arg_PRIVATE_LINKS})
  else()
    add_library(${target} INTERFACE)
    target_include_directories(${target} INTERFACE "${root}")
    target_link_libraries(${target} INTERFACE ${arg_LINKS})
  endif()
endfunction()
