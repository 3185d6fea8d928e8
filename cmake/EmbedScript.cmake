# Compiles a plain .js file in: the header scripts/<name>.h defines it as a string constant.
function(tarn_embed_script target name source)
  set(header ${CMAKE_CURRENT_BINARY_DIR}/scripts/${name}.h)
  add_custom_command(
    OUTPUT ${header}
    COMMAND ${CMAKE_COMMAND} -DSOURCE=${CMAKE_CURRENT_SOURCE_DIR}/${source} -DHEADER=${header} -DNAME=${name}
            -P ${PROJECT_SOURCE_DIR}/cmake/WriteScriptHeader.cmake
    DEPENDS ${source} ${PROJECT_SOURCE_DIR}/cmake/WriteScriptHeader.cmake
    VERBATIM)
  # A target of its own: the script may live in another folder than the library it is compiled into.
  add_custom_target(embed-${name} DEPENDS ${header})
  add_dependencies(${target} embed-${name})
  add_dependencies(generated embed-${name})
  target_include_directories(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR})
endfunction()

