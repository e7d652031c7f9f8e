# zeldlg_warnings(TARGET): the warnings our own code is held to. The presets make them errors.
function(zeldlg_warnings target)
    set(common -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wformat=2 -Wundef)
    set(cxx -Wold-style-cast -Wnon-virtual-dtor -Woverloaded-virtual -Wextra-semi)
    target_compile_options(${target} PRIVATE
        ${common} "$<$<COMPILE_LANGUAGE:CXX>:${cxx}>")
endfunction()
