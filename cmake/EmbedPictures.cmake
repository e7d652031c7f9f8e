# Writes what src/resources/pictures.* include: the names of pictures and the bytes of their files.
# A script: cmake -DNAMES=Check,TokenRed -DART=FOLDER -DOUTPUT=FOLDER -P EmbedPictures.cmake
# TokenRed is of token_red.xpm or token_red.png, and of token_red_2x.png.
function(embed variable file)
    file(READ ${file} bytes HEX)
    string(REGEX REPLACE "(................................)" "\\1\n" bytes "${bytes}")
    string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
    string(APPEND definitions "constexpr uint8_t ${variable}[] = {\n${bytes}};\n")
    set(definitions "${definitions}" PARENT_SCOPE)
endfunction()

string(REPLACE "," ";" names "${NAMES}")
set(definitions)
set(rows)
foreach(name IN LISTS names)
    string(REGEX REPLACE "(.)([A-Z])" "\\1_\\2" stem ${name})
    string(TOLOWER ${stem} stem)
    embed(k${name}Twice ${ART}/${stem}_2x.png)
    if(EXISTS ${ART}/${stem}.xpm)
        string(APPEND definitions "#include \"resources/art/${stem}.xpm\"\n")
        string(APPEND rows "    {${stem}_xpm, {}, k${name}Twice},\n")
    else()
        embed(k${name}Once ${ART}/${stem}.png)
        string(APPEND rows "    {nullptr, k${name}Once, k${name}Twice},\n")
    endif()
endforeach()

string(REPLACE "," ", " enumerators "${NAMES}")
file(WRITE ${OUTPUT}/picture_names.h "#pragma once

namespace zeldlg {

enum class Picture { ${enumerators} };

}  // namespace zeldlg
")
file(WRITE ${OUTPUT}/picture_files.inc "${definitions}
constexpr Files kFiles[] = {
${rows}};
")
