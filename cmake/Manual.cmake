# zeldlg_manual(target): the manual page of a program, whose file name becomes the property MANUAL
# of its target. It is TARGET.1.in with what the program's own help says.
find_package(Python3 REQUIRED COMPONENTS Interpreter)

function(zeldlg_manual target)
    set(template ${CMAKE_CURRENT_SOURCE_DIR}/${target}.1.in)
    set(maker ${PROJECT_SOURCE_DIR}/cmake/make_manual.py)
    set(manual ${CMAKE_CURRENT_BINARY_DIR}/${target}.1)
    add_custom_command(
        OUTPUT ${manual}
        COMMAND ${Python3_EXECUTABLE} ${maker} ${template} ${PROJECT_VERSION} ${manual}
                ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:${target}>
        DEPENDS ${target} ${maker} ${template}
        VERBATIM)
    add_custom_target(${target}-manual ALL DEPENDS ${manual})
    set_target_properties(${target} PROPERTIES MANUAL ${manual})
endfunction()
