/* Random streams and distribution generators.
 *
 * A stream is a heap object: a 16-byte header, then the state of its basic generator. It belongs to one
 * thread at a time; different streams may be used from different threads at once. Every function returns a
 * 32-bit status, 0 for success and negative for failure, unless its comment says otherwise. Pointers are
 * taken as valid. */
#ifndef ORX_KOB_H
#define ORX_KOB_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* ---- status codes ---- */
enum {
  KOB_STATUS_OK = 0,
  KOB_ERROR_METHOD = -2,      /* InitStream with a method other than 0, 1, 2 */
  KOB_ERROR_BAD_ARG = -3,     /* an argument out of its range */
  KOB_ERROR_MEM_FAILURE = -4, /* an allocation returned nothing */
  KOB_ERROR_NULL_PTR = -5, /* a null function in a registered record; a null buffer in an abstract stream */
  KOB_ERROR_BRNG_INDEX = -1000, /* no such generator, or one that this call does not make */
  KOB_ERROR_LEAPFROG_UNSUPPORTED = -1002,
  KOB_ERROR_SKIPAHEAD_UNSUPPORTED = -1003,
  KOB_ERROR_BAD_STATE_SIZE = -1008, /* registration: StateSize negative */
  KOB_ERROR_BAD_WORD_SIZE = -1009,  /* registration: WordSize not 4, 8 or 16 */
  KOB_ERROR_BAD_SEED_COUNT = -1010, /* registration: SeedCount below 1 */
  KOB_ERROR_BAD_BIT_COUNT = -1011,  /* registration: BitCount below 1 */
  KOB_ERROR_QRNG_PERIOD_ELAPSED = -1012,
  KOB_ERROR_LEAPFROG_NSTREAMS = -1013,     /* a negative number of streams */
  KOB_ERROR_UNSUPPORTED_WORD_BITS = -1014, /* the generator has no such bit output */
  KOB_ERROR_FILE_CLOSE = -1100,
  KOB_ERROR_FILE_OPEN = -1101,
  KOB_ERROR_FILE_WRITE = -1102,
  KOB_ERROR_FILE_READ = -1103,
  KOB_ERROR_BAD_FILE_FORMAT = -1110,
  KOB_ERROR_UNSUPPORTED_FILE_VER = -1111,
  KOB_ERROR_ABSTRACT_CALLBACK_FAILED = -1120,
  KOB_ERROR_ABSTRACT_CALLBACK_EMPTY = -1121,
  KOB_ERROR_ABSTRACT_WRONG_KIND = -1122,
  KOB_ERROR_TRNG_UNSUPPORTED = -1130, /* the processor has no RDRAND */
  KOB_ERROR_TRNG_FAILED = -1131,      /* RDRAND failed past the retry limit */
  KOB_ERROR_BAD_MEM_FORMAT = -1200,
  KOB_ERROR_GLOBAL_ENTRY_NOT_FOUND = -3000,
  KOB_ERROR_GLOBAL_TABLE_FULL = -3001
};

/* ---- streams ---- */

/* The header of a stream. The generator's state follows it directly. */
typedef struct KobStream {
  uint32_t BrngId;
  uint32_t Reserved;
  uint64_t Chunks; /* the address of the first KobChunk, 0 for none */
} KobStream;

/* Sixteen bytes that name a block shared between streams; all zero names none. */
typedef struct KobGlobalId {
  uint32_t Word[4];
} KobGlobalId;

/* A named block of data that travels with a stream: left-overs and caches of distribution generators, tables
 * of a generator. */
typedef struct KobChunk {
  uint32_t ChunkId;
  uint32_t Size; /* bytes */
  void* Data;
  struct KobChunk* Next;
  KobGlobalId GlobalId; /* all zero: the chunk owns Data */
} KobChunk;

/* The four functions of a basic generator. InitStream: method 0 seeds from n words at params, method 1
 * leapfrogs (n streams, params points at the number of this one), method 2 skips (n is 2, params points at
 * the low and the high word of the count). The block functions write n numbers, or n generator words, and go
 * on where the last call ended; n of 0 or less writes nothing. */
typedef int (*KobInitStream)(int method, KobStream* stream, int n, const uint32_t params[]);
typedef int (*KobsGenerate)(KobStream* stream, int n, float r[], float a, float b);
typedef int (*KobdGenerate)(KobStream* stream, int n, double r[], double a, double b);
typedef int (*KobiGenerate)(KobStream* stream, int n, uint32_t r[]);

/* What a basic generator is: one record of the registry. */
typedef struct KobBrngProperties {
  int32_t StateSize;    /* bytes of the whole stream, header included */
  int32_t SeedCount;    /* 32-bit words of seed */
  int32_t IncludesZero; /* 1 when a number can be exactly zero */
  int32_t WordSize;     /* bytes of one generated word: 4, 8 or 16 */
  int32_t BitCount;     /* significant bits of one generated word */
  KobInitStream InitStream;
  KobsGenerate sGenerate; /* a + (b - a) u, u uniform on [0, 1) */
  KobdGenerate dGenerate;
  KobiGenerate iGenerate; /* raw words */
} KobBrngProperties;

#ifdef __cplusplus
}
#endif

#endif
