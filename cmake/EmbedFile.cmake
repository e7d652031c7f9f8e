# Writes a C++ file with the bytes of another file and the function that returns them. A script:
# cmake -DINPUT=... -DOUTPUT=... -DFUNCTION=... -P EmbedFile.cmake
file(READ ${INPUT} bytes HEX)
string(REGEX REPLACE "(................................)" "\\1\n" bytes "${bytes}")
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
file(WRITE ${OUTPUT} "#include \"resources/embedded_files.h\"

namespace zeldlg {

namespace {

constexpr uint8_t kBytes[] = {
${bytes}};

}  // namespace

std::span<const uint8_t> ${FUNCTION}() { return kBytes; }

}  // namespace zeldlg
")
