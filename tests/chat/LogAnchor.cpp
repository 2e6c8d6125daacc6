// Nothing is called here; the library only has to be loadable.
extern "C" int zentriTestLogAnchor();
extern "C" int zentriTestLogAnchor() {
    return 0;
}
