/* A shared library that is no plug-in. */
int Nothing(void);
int Nothing(void) {
    return 0;
}
