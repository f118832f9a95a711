/* Plug-ins that do what none should; MISBEHAVIOUR says which one this is. */
#include <signal.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "companion/quibra_plugin.h"

enum { kCrash, kHang, kLeave, kOverrunByOne, kOverrunFar, kOverrunNumbers, kNoEnd, kLongResult, kStrayResult };

const char* QuibraExternMain(char* name, int32_t* window, char* title, int16_t question, int16_t question_count,
                             int16_t answer, char** labels, int32_t id, int16_t* counts, int16_t* answers,
                             char** essays) {
    static char longResult[QUIBRA_EXTERN_RESULT + 2];
    (void)name, (void)window, (void)question, (void)answer, (void)id, (void)answers, (void)essays;
    switch (MISBEHAVIOUR) {
        case kCrash:
            raise(SIGSEGV);
            break;
        case kHang:
            for (;;)
                pause();
        case kLeave:
            exit(0);
        case kOverrunByOne:
            title[QUIBRA_EXTERN_TEXT] = '\0';
            break;
        case kOverrunFar:
            memset(labels[0], 'x', 1 << 20);
            break;
        case kOverrunNumbers:
            counts[question_count + 1] = 1;
            break;
        case kNoEnd:
            memset(title, 'x', QUIBRA_EXTERN_TEXT);
            break;
        case kLongResult:
            memset(longResult, 'x', QUIBRA_EXTERN_RESULT + 1);
            return longResult;
        case kStrayResult:
            return (const char*)(uintptr_t)16;
    }
    return "";
}
