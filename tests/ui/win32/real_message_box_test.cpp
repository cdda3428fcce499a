// The real Windows message box: shown with MessageBoxA and answered from outside the box.
#include "platform/process.h"
#include "zelqa.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace {

struct PressRequest {
    const char *caption;
    int button;
    bool pressed;
};

// Waits for the dialog with this caption, then clicks its button as a user would.
DWORD WINAPI pressButtonWhenShown(void *param) {
    auto *request = static_cast<PressRequest *>(param);
    for (int attempt = 0; attempt < 400 && !request->pressed; ++attempt) {
        HWND box = FindWindowA("#32770", request->caption);
        HWND button = box ? GetDlgItem(box, request->button) : nullptr;
        if (button) {
            PostMessageA(button, BM_CLICK, 0, 0);
            request->pressed = true;
        }
        Sleep(50);
    }
    return 0;
}

int answerRealBox(pObj (*box)(pObj, pObj), const char *caption, int button, pObj *result) {
    PressRequest request{caption, button, false};
    HANDLE presser = CreateThread(nullptr, 0, pressButtonWhenShown, &request, 0, nullptr);
    *result = box(__INIT_CHARPTR("Confirma a gravação?"), __INIT_CHARPTR(caption));
    WaitForSingleObject(presser, INFINITE);
    CloseHandle(presser);
    return request.pressed;
}

TEST(RealMessageBox, IsShownAndAnsweredThroughItsButtons) {
    zq::platform::setEnvironment("ZELQA_BOX_ANSWER", nullptr);
    zq::platform::setEnvironment("ZELQA_BOX_LOG", nullptr);
    zq_set_box_hook(nullptr);
    __BeginGlobal();
    pObj result = nullptr;
    ASSERT_TRUE(answerRealBox(__MsgYesNo, "Pergunta sim", IDYES, &result));
    EXPECT_EQ(result, __INIT_BOOL(1));
    ASSERT_TRUE(answerRealBox(__MsgYesNo, "Pergunta nao", IDNO, &result));
    EXPECT_EQ(result, __INIT_BOOL(0));
    ASSERT_TRUE(answerRealBox(__MsgStop, "Parada", IDOK, &result));
    EXPECT_EQ(result, __INIT_BOOL(1));
    __EndGlobal();
    zq::platform::setEnvironment("ZELQA_BOX_ANSWER", "1");
}

} // namespace
