// A shared object of something else.
extern "C" int somethingElse() {
    return 1;
}
