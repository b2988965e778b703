# The tuning client's ways in. It is built without the daemon: nothing of the platform stands below.
add_subdirectory(${CMAKE_SOURCE_DIR}/client ${CMAKE_BINARY_DIR}/client EXCLUDE_FROM_ALL)
add_executable(fuzz_replies targets/replies.cpp)
set_target_properties(fuzz_replies PROPERTIES OUTPUT_NAME replies)
target_link_libraries(fuzz_replies PRIVATE project_options pqclient)
target_link_options(fuzz_replies PRIVATE -fsanitize=fuzzer)
