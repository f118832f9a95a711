/*
 * The companion library "quibra": the innermost loops over packed answers, as plain C functions over flat arrays.
 *
 * Conventions
 *  1. Every array belongs to the caller. Nothing is kept between calls, nothing is allocated, nothing is locked: the
 *     functions may run in any number of threads as long as no two write the same array.
 *  2. `layout` (QIdx) is the address of element 0 of a table with one AnswerLayoutRec per question. An element whose
 *     Anum is 0 or less describes a question that does not exist.
 *  3. `bits` is the address of one sample's words. Question q owns Anum fields of BitWidth bits each from bit BitStart
 *     on; fields run from low bit to high bit, from word 0 on, and may cross into the next word. BitWidth is 1 to 8.
 *     A function touches no word in which its question has no bit.
 *  4. A field holds a choice number. The answers of a question are its leading non-zero fields; a field behind a zero
 *     one is no answer.
 *  5. Condition lines start with a header, element 0, whose `b` is the mask of predefined conditions. Lines follow
 *     from element 1 on and end with the first one whose `a` is 0. That closing line is the caller's duty.
 *  6. Question numbers inside condition lines are looked up in the layout, 0 to 255; `layout` therefore has 256
 *     elements wherever lines are passed. A line that names a question that does not exist is not met.
 *  7. 16-bit values travel in the low 16 bits of a 32-bit argument; the upper bits are ignored.
 *  8. Counts and list lengths are trusted: the caller passes no count above Anum.
 *  9. CallExternDLL alone allocates, and runs a plug-in in a process of its own (quibra_plugin.h tells what that is and
 *     how texts and lists are passed). Whatever the plug-in does, the caller's memory and process are safe from it.
 */
#ifndef QUIBRA_COMPANION_QUIBRA_H
#define QUIBRA_COMPANION_QUIBRA_H

#include <stdint.h>

#define QUIBRA_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/* Where a question's answers lie in a sample. Order and size (8 bytes) are a binary contract. */
typedef struct AnswerLayoutRec {
    int16_t Anum;       /* answers the question accepts */
    int16_t BitStart;   /* first bit of its answers */
    int16_t BitWidth;   /* bits of one answer */
    int16_t EssayStart; /* first slot of its texts; not looked at here */
} AnswerLayoutRec;

/* One line of a condition: a = rank * 16 + kind, b = question * 128 + choice, wrapped to 16 bits. */
typedef struct LimitLine {
    int16_t a;
    int16_t b;
} LimitLine;

/* Unpacks the answers of question Qno to Ano[0 ..], their number to *AnoCount. Ano[0] is 0 when there is none. */
QUIBRA_API void maAno_popC(const AnswerLayoutRec* layout, int32_t Qno, const int16_t* bits, int16_t* AnoCount,
                           int16_t* Ano);

/* Packs *AnoCount answers from Ano into question Qno and clears its fields behind them. */
QUIBRA_API void maAno_pushC(const AnswerLayoutRec* layout, int32_t Qno, int16_t* bits, const int16_t* AnoCount,
                            const int16_t* Ano);

/* The same for questions 0 to QuestionCount - 1 at once: one count a question, the answers behind each other. Ano has
   room for one number more than the answers, since an unanswered question still writes a 0 at its place. */
QUIBRA_API void maAno_pop_verstC(int32_t QuestionCount, const AnswerLayoutRec* layout, const int16_t* bits,
                                 int16_t* AnoCounts, int16_t* Ano);
QUIBRA_API void maAno_push_verstC(int32_t QuestionCount, const AnswerLayoutRec* layout, int16_t* bits,
                                  const int16_t* AnoCounts, const int16_t* Ano);

/* 1 when the sample meets the condition, else 0. sampleFlags: its PreLimitBits, for the mask. */
QUIBRA_API int32_t lmDoC(const LimitLine* lines, const AnswerLayoutRec* layout, int32_t sampleFlags,
                         const int16_t* bits);

/* When the sample meets the condition, adds 1 to counts[c] for each of its answers c to question qno, or to counts[0]
   when it has none, and gives 1; otherwise gives 0. rank n above 0 looks at the n-th answer alone. counts has 128
   elements; an answer above 127, which only damaged data hold, is not counted. */
QUIBRA_API int32_t VerstTotalC(const LimitLine* lines, const AnswerLayoutRec* layout, int32_t sampleFlags,
                               const int16_t* bits, int32_t qno, int32_t* counts, int32_t rank);

/* Calls the plug-in `name` with these arguments and gives its text, which the caller frees with free(). Each text is in
   a buffer as told in quibra_plugin.h; what the plug-in has written is in the arguments afterwards.

   A null pointer and errno when that fails, with all arguments as they were: EINVAL for a name that is none, ENOENT
   when no plug-in folder has it, ENOEXEC when it can't be loaded or has no QuibraExternMain, ETIMEDOUT when it took
   longer than QUIBRA_EXTERN_SECONDS, ECHILD when it crashed or left its process, EFAULT when it wrote past the end of a
   buffer, EMSGSIZE for too long a result, EPROTO when what came back makes no sense, and what the system says when it
   could not be started. */
QUIBRA_API char* CallExternDLL(char* name, int32_t* window, char* title, int16_t question, int16_t question_count,
                               int16_t answer, char** labels, int32_t id, int16_t* counts, int16_t* answers,
                               char** essays);

#ifdef __cplusplus
}
#endif

#endif
