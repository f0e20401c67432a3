# layer(), program() and test_of() declare targets; what they may include is recorded on the way
# and checked by the test named "layers" (cmake/CheckLayers.cmake).

# layer(NAME [OBJECT] SOURCES a.cpp b.h ... NEEDS orvel_x Qt5::Core ...)
# A static library of one floor. It may include its own headers, those of the layers it needs
# (and of what these need), and the Qt modules named here or below.
function(layer name)
  cmake_parse_arguments(ARG "" "" "SOURCES;NEEDS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC orvel_build_flags ${ARG_NEEDS})
  record_layer(${name} "${ARG_SOURCES}" "${ARG_NEEDS}")
endfunction()

# compile_forms(NAME Form ...): forms/<Form>.ui as "ui_<Form>.h" for the sources of one layer.
function(compile_forms name)
  list(TRANSFORM ARGN PREPEND ${CMAKE_SOURCE_DIR}/forms/)
  list(TRANSFORM ARGN APPEND .ui)
  target_sources(${name} PRIVATE ${ARGN})
  set_target_properties(${name} PROPERTIES AUTOUIC ON AUTOUIC_SEARCH_PATHS ${CMAKE_SOURCE_DIR}/forms)
endfunction()

# program(NAME SOURCES main.cpp ... NEEDS orvel_x ...): an executable in build/<preset>/bin.
function(program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;NEEDS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE orvel_build_flags ${ARG_NEEDS})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
  record_layer(${name} "${ARG_SOURCES}" "${ARG_NEEDS}")
endfunction()

# test_of(FLOOR UNIT NEEDS ...): tests/<FLOOR>/tst_<UNIT>.cpp as one QtTest program and ctest case.
function(test_of floor unit)
  cmake_parse_arguments(ARG "" "" "NEEDS" ${ARGN})
  set(name tst_${unit})
  add_executable(${name} ${floor}/${name}.cpp)
  target_link_libraries(${name} PRIVATE orvel_build_flags ${ARG_NEEDS} Qt5::Test)
  add_test(NAME ${floor}/${unit} COMMAND ${name})
  set_tests_properties(${floor}/${unit} PROPERTIES TIMEOUT 300 ENVIRONMENT "${ORVEL_TEST_ENVIRONMENT}")
endfunction()

function(record_layer name sources needs)
  set(paths)
  foreach(source IN LISTS sources)
    get_filename_component(path ${source} ABSOLUTE)
    file(RELATIVE_PATH path ${CMAKE_SOURCE_DIR} ${path})
    list(APPEND paths ${path})
  endforeach()
  set_property(GLOBAL APPEND PROPERTY orvel_layers ${name})
  set_property(GLOBAL PROPERTY orvel_sources_${name} "${paths}")
  set_property(GLOBAL PROPERTY orvel_needs_${name} "${needs}")
endfunction()

# One line a target: NAME|needs,separated,by,commas|sources,separated,by,commas
function(write_layer_table path)
  get_property(layers GLOBAL PROPERTY orvel_layers)
  set(text "")
  foreach(name IN LISTS layers)
    get_property(needs GLOBAL PROPERTY orvel_needs_${name})
    get_property(sources GLOBAL PROPERTY orvel_sources_${name})
    string(REPLACE ";" "," needs "${needs}")
    string(REPLACE ";" "," sources "${sources}")
    string(APPEND text "${name}|${needs}|${sources}\n")
  endforeach()
  file(WRITE ${path} "${text}")
endfunction()
