# ohm_set_warnings(target): the project's warning set, errors when OHMUTILS_WERROR is on.
function(ohm_set_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
                                           -Wold-style-cast -Woverloaded-virtual -Wnull-dereference
                                           -Wimplicit-fallthrough)
  if(OHMUTILS_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
