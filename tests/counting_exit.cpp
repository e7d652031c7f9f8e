// _exit of a program that counts what it runs (script/coverage): the counts are written first.
extern "C" {
void __gcov_dump();
[[noreturn]] void __real__exit(int code);
[[noreturn]] void __wrap__exit(int code);
}

void __wrap__exit(int code) {
    __gcov_dump();
    __real__exit(code);
}
