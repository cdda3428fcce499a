// A sample application written the way compiled ZELQA code calls the runtime.
//
// It builds values, copies them into variables, prints them, shows the allocation
// balance and ends in a runtime error (a number where a text belongs), whose box
// ZELQA_BOX_ANSWER answers when nobody is at the screen.
#include "zelqa.h"

#include <cstdio>

int main() {
    __BeginGlobal();
    zq_enter_function("MAIN", 1);

    pObj name = __SET_OBJECT(nullptr, __INIT_CHARPTR("Pedido de venda"));
    pObj total = __SET_OBJECT(nullptr, __INIT_DOUBLE(1234.5));
    pObj today = __SET_OBJECT(nullptr, __INIT_DATE(__EncodeDate(2026, 11, 23)));
    std::printf("name=%s total=%.2f date=%.0f\n", name->payload.c, total->payload.d, today->payload.d);
    ShowFreeMem();

    zq_enter_function("MAIN", 14);
    __MsgAlert(total, nullptr); // a number is not a message: the run ends here
    std::puts("not reached");
    return 1;
}
