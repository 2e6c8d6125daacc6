// A library without a module's exports.
int fixtureNothing() {
    return 0;
}
