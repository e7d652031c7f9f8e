"""Every dialog of the library in a host that runs under Valgrind: see script/memcheck."""
