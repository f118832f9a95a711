/*
 * What a plug-in of Quibra is: a shared library that belongs to a survey and is called while its samples are typed. It
 * sees the sample and may give text back for the answer sheet. This header needs nothing but a C compiler.
 *
 * Conventions
 *  1. A plug-in is a file NAME.so in a plug-in folder: $XDG_DATA_HOME/quibra/plugins (~/.local/share/quibra/plugins),
 *     then the folder "plugins" beside the companion library's own. NAME is what the survey says: 1 to 64 of the
 *     letters A to Z and a to z, digits, "_" and "-".
 *  2. It exports QuibraExternMain, with the eleven arguments of QuibraExternFunction below.
 *  3. Every call has a process of its own, so nothing in memory lasts from one call to the next. It has
 * QUIBRA_EXTERN_SECONDS; a call that takes longer, crashes or leaves its process has failed, and nothing it did to its
 * arguments counts. Standard input is empty, and standard output goes where messages go.
 *  4. Texts are code page 932 (Shift-JIS) and end with a NUL. Each lies in a buffer of its own that holds
 *     QUIBRA_EXTERN_TEXT bytes, or the text and its NUL where these are more.
 *  5. `labels` has question_count texts and a null pointer behind them. `essays` has a text for each answer slot and
 *     one spare, and a null pointer behind them; `answers` has as many numbers as `essays` has texts. `counts` has
 *     question_count + 1 numbers, the last one a spare.
 *  6. The answers of question 0 are answers[0] to answers[counts[0] - 1], those of question 1 follow, and so on: no
 * gaps. Choice numbers count from 1; essays[i] goes with answers[i] and is empty where there is none.
 *  7. All arguments may be written, inside their buffers. Of what is written the program keeps `name` alone, as the
 *     survey's plug-in from now on. A pointer put into `labels` or `essays` is not followed. A byte written past
 *     the end of a buffer makes the call fail.
 *  8. The result is a text as above, of at most QUIBRA_EXTERN_RESULT bytes, or a null pointer for none. It must lie
 * where it stays when the function has returned (a static array, a literal); nobody frees it.
 */
#ifndef QUIBRA_PLUGIN_H
#define QUIBRA_PLUGIN_H

#include <stdint.h>

#define QUIBRA_EXTERN_TEXT 256
#define QUIBRA_EXTERN_RESULT 65535
#define QUIBRA_EXTERN_SECONDS 5

#ifdef __cplusplus
extern "C" {
#endif

/* name            the plug-in's name
   window          the window of the program on its display, 0 without one
   title           the survey's title
   question        the question at which the typing stands, from 1; 0 in a test, question_count + 1 behind the last one
   question_count  how many questions there are
   answer          the answer at which the typing stands, from 0
   labels          the questions' names
   id              the sample's ID
   counts          how many answers each question has
   answers         their choice numbers
   essays          their texts */
typedef const char* QuibraExternFunction(char* name, int32_t* window, char* title, int16_t question,
                                         int16_t question_count, int16_t answer, char** labels, int32_t id,
                                         int16_t* counts, int16_t* answers, char** essays);

/* A plug-in defines it. */
#define QUIBRA_EXTERN_EXPORT __attribute__((visibility("default")))
QUIBRA_EXTERN_EXPORT QuibraExternFunction QuibraExternMain;

#ifdef __cplusplus
}
#endif

#endif
