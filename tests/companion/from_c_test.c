/* The companion library as a C program sees it: three questions, one sample, a road from packing to counting. */
#include <stddef.h>
#include <string.h>

#include "companion/quibra.h"

#define CLAIM(claim) \
    if (!(claim)) return #claim

const char* CheckCompanionFromC(void);

/* The first claim that does not hold; NULL when all do. */
const char* CheckCompanionFromC(void) {
    AnswerLayoutRec layout[256];
    int16_t bits[2] = {0, 0};
    const int16_t counts[3] = {1, 3, 0};
    const int16_t answers[4] = {2, 5, 1, 7};
    int16_t count = -1;
    int16_t popped[4] = {-1, -1, -1, -1};
    /* 2 to question 0, and of question 1 any of 5 to 6 but not 1 at position 1. */
    LimitLine lines[5] = {{0, 1}, {3, 2}, {3, 128 + 5}, {2, 128 + 6}, {0, 0}};
    int32_t figures[128];

    CLAIM(sizeof(AnswerLayoutRec) == 8 && sizeof(LimitLine) == 4);
    memset(layout, 0, sizeof layout);
    memset(figures, 0, sizeof figures);
    layout[0] = (AnswerLayoutRec){1, 0, 2, 0};
    layout[1] = (AnswerLayoutRec){4, 2, 3, 0};
    layout[2] = (AnswerLayoutRec){1, 14, 8, 0};

    maAno_push_verstC(3, layout, bits, counts, answers);
    CLAIM(bits[0] == (2 | 5 << 2 | 1 << 5 | 7 << 8) && bits[1] == 0);
    maAno_popC(layout, 1, bits, &count, popped);
    CLAIM(count == 3 && popped[0] == 5 && popped[1] == 1 && popped[2] == 7 && popped[3] == -1);

    CLAIM(lmDoC(lines, layout, 3, bits) == 1);
    CLAIM(lmDoC(lines, layout, 2, bits) == 0);
    CLAIM(VerstTotalC(lines, layout, 1, bits, 1, figures, 0) == 1);
    CLAIM(VerstTotalC(lines, layout, 1, bits, 1, figures, 2) == 1);
    CLAIM(VerstTotalC(lines, layout, 1, bits, 2, figures, 0) == 1);
    CLAIM(figures[5] == 1 && figures[1] == 2 && figures[7] == 1 && figures[0] == 1);

    lines[3] = (LimitLine){4, 128 + 1};
    CLAIM(VerstTotalC(lines, layout, 1, bits, 1, figures, 0) == 0);
    CLAIM(figures[5] == 1);
    return NULL;
}
