/*
 * A host that treats the library roughly: `zeldlg_rough_host SCENARIO [ARGUMENT]`. ZELDLG_LIBRARY
 * names the library. Ends with exit code 43 when everything was as it should be, and is ended by an
 * alarm when a call does not return.
 */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <pthread.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/time.h>
#include <unistd.h>
#include <zeldlg/zeldlg.h>

enum { kAsExpected = 43, kWrong = 44, kPatience = 120 };

static const DLG_FunctionList* g_library;

static uint32_t GetLocale(void) {
    wchar_t buffer[64];
    uint32_t size = 64;
    return g_library->GetLocale(buffer, &size);
}

static void Pause(unsigned milliseconds) { usleep(milliseconds * 1000); }

static void StartThread(void* (*function)(void*)) {
    pthread_t thread;
    if (pthread_create(&thread, NULL, function, NULL) != 0) {
        _exit(kWrong);
    }
    pthread_detach(thread);
}

/* ---- callers MILLISECONDS: main returns while others call without a pause. */

static void* AskForLocale(void* unused) {
    for (;;) {
        GetLocale();
    }
    return unused;
}

static void* ShowAndHideKeyGeneration(void* unused) {
    for (;;) {
        g_library->ShowKeyGenerationProgressDialog();
        g_library->HideKeyGenerationProgressDialog();
    }
    return unused;
}

static void* ShowAndHidePad(void* unused) {
    for (;;) {
        void* pad = NULL;
        if (g_library->PinPadShowVerificationDialog(&pad, 1) != 0) {
            g_library->PinPadHideDialog(pad);
        }
    }
    return unused;
}

static int ReturnBesideCallers(const char* milliseconds) {
    StartThread(AskForLocale);
    StartThread(ShowAndHideKeyGeneration);
    StartThread(ShowAndHidePad);
    Pause((unsigned)strtoul(milliseconds, NULL, 10));
    return kAsExpected;
}

/* ---- restarts MILLISECONDS: main returns while another starts and ends in a loop. */

static void* StartAndEnd(void* unused) {
    for (;;) {
        GetLocale();
        g_library->Finalize();
    }
    return unused;
}

static int ReturnBesideRestarts(const char* milliseconds) {
    StartThread(StartAndEnd);
    Pause((unsigned)strtoul(milliseconds, NULL, 10));
    return kAsExpected;
}

/* ---- signal: exits in a signal handler, on the thread that waits in DLG_Finalize. */

static void Finalise(void) { g_library->Finalize(); }

static void ExitInHandler(int number) {
    (void)number;
    exit(kAsExpected);
}

static void* AskForPin(void* unused) {
    uint8_t bytes[64];
    const PinDialogRequest request = {
        .tokenLabel = "Card", .minPinLength = 4, .maxPinLength = 8, .noFailure = 1};
    PinBuffer buffer = {.pin = bytes, .pinLength = sizeof bytes};
    g_library->ShowPinDialog(&request, &buffer);
    return unused;
}

static int ExitInSignalHandler(void) {
    const struct itimerval soon = {.it_value = {.tv_usec = 500000}};
    atexit(Finalise);
    signal(SIGALRM, ExitInHandler);
    GetLocale();
    StartThread(AskForPin);
    Pause(100);
    setitimer(ITIMER_REAL, &soon, NULL);
    g_library->Finalize(); /* waits for the dialog, which nobody answers */
    return kWrong;
}

/* ---- cancel: a thread that can be cancelled anywhere is, somewhere in or around its calls. */

static void* CallUntilCancelled(void* begun) {
    pthread_setcanceltype(PTHREAD_CANCEL_ASYNCHRONOUS, NULL);
    for (;;) {
        GetLocale();
        *(volatile int*)begun = 1;
    }
    return NULL;
}

static int CancelCallers(void) {
    GetLocale();
    for (int round = 0; round < 300; ++round) {
        volatile int begun = 0;
        pthread_t thread;
        pthread_create(&thread, NULL, CallUntilCancelled, (void*)&begun);
        while (begun == 0) {
            usleep(20);
        }
        usleep((unsigned)(round * 7 % 100));
        pthread_cancel(thread);
        pthread_join(thread, NULL);
    }
    const int works = GetLocale() == ZELDLG_OK;
    g_library->Finalize();
    return works ? kAsExpected : kWrong;
}

/* ---- constructor LIBRARY: loads a library whose constructor calls (rough_constructor.c). */

static int CallInConstructor(const char* library) {
    void* const loaded = dlopen(library, RTLD_NOW);
    const uint32_t* const seen = loaded != NULL ? dlsym(loaded, "ZeldlgSeenInConstructor") : NULL;
    if (seen == NULL || *seen != ZELDLG_FAILED) {
        return kWrong;
    }
    const int works = GetLocale() == ZELDLG_OK;
    g_library->Finalize();
    return works && GetLocale() == ZELDLG_OK ? kAsExpected : kWrong;
}

int main(int count, char** words) {
    void* const library = dlopen(getenv("ZELDLG_LIBRARY"), RTLD_NOW | RTLD_LOCAL);
    const DLG_FunctionList* (*getFunctionList)(void) = NULL;
    if (library != NULL) {
        *(void**)&getFunctionList = dlsym(library, "DLG_GetFunctionList");
    }
    if (getFunctionList == NULL || count < 2) {
        return kWrong;
    }
    g_library = getFunctionList();
    alarm(kPatience);
    const char* const argument = count > 2 ? words[2] : "";
    if (strcmp(words[1], "callers") == 0) {
        return ReturnBesideCallers(argument);
    }
    if (strcmp(words[1], "restarts") == 0) {
        return ReturnBesideRestarts(argument);
    }
    if (strcmp(words[1], "signal") == 0) {
        return ExitInSignalHandler();
    }
    if (strcmp(words[1], "cancel") == 0) {
        return CancelCallers();
    }
    return strcmp(words[1], "constructor") == 0 ? CallInConstructor(argument) : kWrong;
}
