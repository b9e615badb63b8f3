# tarnwick_add_test(tst_Name LABEL core LIBS tarnwick_core)  builds tests/<folder>/tst_Name.cpp
function(tarnwick_add_test name)
    cmake_parse_arguments(T "" "LABEL" "LIBS" ${ARGN})
    add_executable(${name} ${name}.cpp)
    target_link_libraries(${name} PRIVATE ${T_LIBS} tarnwick_options Qt6::Test)
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests/common)
    target_compile_definitions(${name} PRIVATE
        TARNWICK_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data"
        TARNWICK_CORPUS="${PROJECT_SOURCE_DIR}/../shared/corpus/configs")
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES LABELS "${T_LABEL}" ENVIRONMENT QT_QPA_PLATFORM=offscreen)
endfunction()
