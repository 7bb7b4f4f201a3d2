// A library with three entry points of which one tells which build of it this is.
#define EXPORT extern "C" ZQ_TEST_EXPORT

EXPORT int First();
EXPORT int Second();
EXPORT int Fourth();

int First() {
    return ZQ_TEST_BUILD;
}
int Second() {
    return 2;
}
int Fourth() {
    return 4;
}
