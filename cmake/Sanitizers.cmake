# Everything of ours is built with the chosen sanitizers: a host that loads an instrumented
# library must carry the same run time.
if(ZELDLG_SANITIZE)
    add_compile_options(-fsanitize=${ZELDLG_SANITIZE} -fno-omit-frame-pointer -O1)
    add_link_options(-fsanitize=${ZELDLG_SANITIZE})
    if(ZELDLG_SANITIZE MATCHES "undefined")
        add_compile_options(-fno-sanitize-recover=undefined)
    endif()
else()
    add_compile_options(-fstack-protector-strong)
    if(NOT CMAKE_CXX_FLAGS MATCHES "_FORTIFY_SOURCE")  # distributions choose their own
        add_compile_definitions($<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:_FORTIFY_SOURCE=2>)
    endif()
endif()
if(ZELDLG_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()
if(ZELDLG_COVERAGE)
    # Two threads count at once. A forked child that ends by _exit leaves its counts out.
    add_compile_options(--coverage -fprofile-update=atomic)
    add_link_options(--coverage)
endif()
add_compile_definitions($<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
