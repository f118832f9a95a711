/* A plug-in that answers: it tells what it has been given, and leaves other things in its place. */
#include <stdio.h>
#include <string.h>

#include "companion/quibra_plugin.h"

const char* QuibraExternMain(char* name, int32_t* window, char* title, int16_t question, int16_t question_count,
                             int16_t answer, char** labels, int32_t id, int16_t* counts, int16_t* answers,
                             char** essays) {
    static char result[4096];
    int at = snprintf(result, sizeof result, "%s,%d,%s,%d,%d,%d,%d", name, (int)*window, title, question,
                      question_count, answer, (int)id);
    int slot = 0;
    for (int q = 0; q < question_count; ++q) {
        at += snprintf(result + at, sizeof result - at, ",%s:", labels[q]);
        for (int i = 0; i < counts[q]; ++i, ++slot)
            at += snprintf(result + at, sizeof result - at, "%d%s", answers[slot], essays[slot]);
    }
    printf("this goes where messages go\n");

    /* To the last byte of each buffer, and pointers that nobody follows. */
    memset(title, 't', QUIBRA_EXTERN_TEXT - 1);
    title[QUIBRA_EXTERN_TEXT - 1] = '\0';
    *window = -1;
    for (int q = 0; labels[q] != NULL; ++q) {
        strcpy(labels[q], "label");
        counts[q] = 7;
    }
    for (int i = 0; essays[i] != NULL; ++i) {
        strcpy(essays[i], "essay");
        answers[i] = 8;
        essays[i] = NULL;
    }
    strcpy(name, "renamed");
    return result;
}
