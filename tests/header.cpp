#include "tests/header.c"
