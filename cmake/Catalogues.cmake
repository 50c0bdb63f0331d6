# Compiles locale/<language>/<domain>.po to share/locale below the build folder, and installs it.
find_program(MSGFMT msgfmt REQUIRED)

function(wakeloft_catalogues domain)
  file(GLOB catalogues CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*/${domain}.po)
  set(compiled "")
  foreach(catalogue IN LISTS catalogues)
    cmake_path(GET catalogue PARENT_PATH folder)
    cmake_path(GET folder FILENAME language)
    set(output ${PROJECT_BINARY_DIR}/share/locale/${language}/LC_MESSAGES/${domain}.mo)
    add_custom_command(
      OUTPUT ${output}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/share/locale/${language}/LC_MESSAGES
      COMMAND ${MSGFMT} --check-format --check-domain --output-file=${output} ${catalogue}
      DEPENDS ${catalogue}
      VERBATIM)
    install(FILES ${output} DESTINATION ${CMAKE_INSTALL_LOCALEDIR}/${language}/LC_MESSAGES)
    list(APPEND compiled ${output})
  endforeach()
  add_custom_target(catalogues-${domain} ALL DEPENDS ${compiled})
endfunction()

# Writes `template`, which holds English texts of the catalogue Wakeloft, to `output` with their translations.
# The rest of the arguments tell msgfmt its format. As part of the target that `target` names.
function(wakeloft_translated target template output)
  file(STRINGS ${PROJECT_SOURCE_DIR}/locale/LINGUAS languages)
  list(REMOVE_ITEM languages en)
  set(step ${output}.next)
  set(commands COMMAND ${CMAKE_COMMAND} -E copy ${template} ${output})
  set(catalogues "")
  foreach(language IN LISTS languages)
    set(catalogue ${PROJECT_SOURCE_DIR}/locale/${language}/Wakeloft.po)
    list(APPEND catalogues ${catalogue})
    list(APPEND commands
      COMMAND ${MSGFMT} ${ARGN} --template=${output} --locale=${language} --output-file=${step} ${catalogue}
      COMMAND ${CMAKE_COMMAND} -E rename ${step} ${output})
  endforeach()
  add_custom_command(OUTPUT ${output} ${commands} DEPENDS ${template} ${catalogues} VERBATIM)
  add_custom_target(${target} ALL DEPENDS ${output})
endfunction()
