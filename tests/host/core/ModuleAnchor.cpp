// Nothing is called here: the log stands beside whatever is loaded under the module's name.
extern "C" int zentriModuleAnchor();
extern "C" int zentriModuleAnchor() {
    return 0;
}
