# ohm_set_warnings(target): the project's warning set, errors when OHMUTILS_WERROR is on.
function(ohm_set_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
                                           -Wold-style-cast -Woverloaded-virtual -Wnull-dereference
                                           -Wimplicit-fallthrough)
  if(OHMUTILS_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()

# ohm_set_harness_warnings(target): the same set for tests, benchmarks and
# their helper programs, less two of GCC's warnings in optimised builds. GCC 12
# at -O2 and -O3 reports potential null dereferences and overlapping copies
# inside the standard library's inlined stream and string code that the
# harness uses (std::ostringstream, a string joined with operator+, a
# u16string appended a C string), where no pointer of ours is involved. The
# library and the tool keep both warnings.
function(ohm_set_harness_warnings target)
  ohm_set_warnings(${target})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(${target} PRIVATE "$<$<NOT:$<CONFIG:Debug>>:-Wno-null-dereference;-Wno-restrict>")
  endif()
endfunction()
