# For 64-bit ARM, on a Debian that has its libraries (script/test-aarch64).
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(triplet aarch64-linux-gnu)
set(CMAKE_C_COMPILER ${triplet}-gcc)
set(CMAKE_CXX_COMPILER ${triplet}-g++)
set(PKG_CONFIG_EXECUTABLE ${triplet}-pkg-config)
set(wxWidgets_CONFIG_EXECUTABLE /usr/lib/${triplet}/wx/config/gtk3-unicode-3.2)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64)
