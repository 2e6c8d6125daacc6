// A library that is no module.
int fixtureNothing() {
    return 0;
}
