/* hello: the smallest ZELQA application. It starts the runtime, joins two texts with the
   language's "+" as compiled code does, prints them with the runtime's version, and ends. */
#include <stdio.h>
#include <zelqa.h>

int main(void) {
    __BeginGlobal();
    pObj greeting = __SUM(__INIT_CHARPTR("Hello, "), __INIT_CHARCONST("ZELQA!"));
    printf("%s (runtime %s)\n", greeting->payload.c, zq_version());
    __EndGlobal();
    return 0;
}
