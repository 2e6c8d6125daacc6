// A module that needs a function that nobody has.
extern "C" int zrNobodyHasThis();
extern "C" __attribute__((visibility("default"))) int zrNeedy() {
    return zrNobodyHasThis();
}
