/* A stand-in phonetic library for the tests. Its "ALPHA2" puts the mode flag before the
   text and raises the text to upper case; a text beginning with '!' makes it report
   failure. Built with ZQ_NO_ENTRY it exports "ALPHA3" instead, so "ALPHA2" is missing. */
#include <string.h>

#ifdef _WIN32
#define FIXTURE_EXPORT __declspec(dllexport)
#else
#define FIXTURE_EXPORT __attribute__((visibility("default")))
#endif

#ifdef ZQ_NO_ENTRY
#define ENTRY ALPHA3
#else
#define ENTRY ALPHA2
#endif

FIXTURE_EXPORT int ENTRY(int *length, char *flag, char *buffer) {
    if (buffer[0] == '!')
        return 0;
    int n = *length - 128; /* the text; 128 blanks follow it */
    memmove(buffer + 1, buffer, (size_t)n);
    buffer[0] = flag[0];
    for (int i = 1; i <= n; ++i)
        if (buffer[i] >= 'a' && buffer[i] <= 'z')
            buffer[i] = (char)(buffer[i] - 32);
    *length = n + 1;
    return 1;
}
