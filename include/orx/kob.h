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

/* ---- the registry of basic generators ----
 *
 * Ids. Family i = 0, 1, 2, ... has the id (i + 1) << 20; its sub-generator k has that id plus k. Numbers
 * below 0x100000 are the older numbering: 0 MCG31M1, 1 R250, 2 MRG32K3A, 3 MCG59, 4 to 276 WH, 277 Sobol, 278
 * Niederreiter. docs/generators.md tells what each is good for. */
enum {
  KOB_BRNG_MCG31M1 = 0x100000,
  KOB_BRNG_R250 = 0x200000,
  KOB_BRNG_MRG32K3A = 0x300000,
  KOB_BRNG_MCG59 = 0x400000,
  KOB_BRNG_WH = 0x500000, /* 273 sub-generators */
  KOB_BRNG_SOBOL = 0x600000,
  KOB_BRNG_NIEDERR = 0x700000,
  KOB_BRNG_MT19937 = 0x800000,
  KOB_BRNG_MT2203 = 0x900000, /* 6024 sub-generators */
  KOB_BRNG_IABSTRACT = 0xA00000,
  KOB_BRNG_DABSTRACT = 0xB00000,
  KOB_BRNG_SABSTRACT = 0xC00000,
  KOB_BRNG_SFMT19937 = 0xD00000,
  KOB_BRNG_TRNG = 0xE00000
};

/* Splits an id into the row and the number of the sub-generator; returns the table that the row is in. The id
 * may be one that no generator has. */
const KobBrngProperties* __kobGetBrngBaseOffset(uint32_t id, uint32_t* index, uint32_t* offset);

/* 0 when the table has such a row and the row such a sub-generator, else KOB_ERROR_BRNG_INDEX. */
int __kobIsBrngValid(const KobBrngProperties* table, uint32_t index, uint32_t offset);

/* Copies the record of a generator. KOB_ERROR_BRNG_INDEX when there is none. */
int __kobGetBrngProperties(uint32_t id, KobBrngProperties* properties);

/* Adds a generator of the caller's and returns its id, which is positive. Checked in this order, the first
 * failure is returned: StateSize negative KOB_ERROR_BAD_STATE_SIZE, WordSize KOB_ERROR_BAD_WORD_SIZE,
 * SeedCount below 1 KOB_ERROR_BAD_SEED_COUNT, BitCount below 1 KOB_ERROR_BAD_BIT_COUNT, a null function
 * KOB_ERROR_NULL_PTR; KOB_ERROR_BRNG_INDEX when all 512 rows are taken. Not to be called from two threads at
 * once. Images of streams (saving and loading) hold states of up to 65535 bytes. */
int __kobRegisterBrng(const KobBrngProperties* properties);

/* The number of generator families, registered ones included. */
int __kobGetNumRegBrngs(void);

/* ---- creating, copying, splitting ---- */

/* n seed words from a key of any length, zero words included, such as {year, experiment, process, thread}: by
 * SplitMix64 (Steele, Lea, Flood, OOPSLA 2014), over which each word of the key changes half the bits of each
 * seed word. Keys that differ, be it by a zero at the end, have unrelated seeds; that two have the same is as
 * likely as one in 2^64. Small consecutive numbers are poor seeds for MCG31M1, MCG59, MRG32K3A, WH and R250:
 * their streams stay related for long or for ever. So: one key per stream, spread over as many words as the
 * generator has (make the first odd for MCG59). KOB_ERROR_BAD_ARG for a negative count. A function of this
 * library's own. */
int orx_kob_spread_seed(int key_count, const uint32_t key[], int n, uint32_t seed[]);

/* A new stream of generator `id`, seeded from n words at params; what a generator makes of them stands with
 * its functions below. KOB_ERROR_BRNG_INDEX for an id that is not valid or of an abstract stream,
 * KOB_ERROR_MEM_FAILURE, or what the seeding returned; in the last case *stream is allocated and is to be
 * deleted. */
int __kobNewStreamEx(KobStream** stream, uint32_t id, int n, const uint32_t params[]);

/* The first half of the above: checks the row, allocates and writes the header. The state is unwritten. */
int __kobAllocateStream(KobStream** stream, const KobBrngProperties* table, uint32_t id, uint32_t index,
                        uint32_t offset);

/* Frees a stream and its chunks and makes *stream null. A null *stream is allowed. Returns 0. */
int __kobDeleteStream(KobStream** stream);

/* A second stream that goes on exactly as `source` does. On failure nothing is left over. */
int __kobCopyStream(KobStream** stream, const KobStream* source);

/* Carries the position and the chunks of `source` over to a stream of the same generator. What moves is
 * WordSize * SeedCount bytes of the state, as far as both states reach: multipliers changed by a leapfrog
 * (MCG31M1, MCG59) and the parameters of an MT2203 sub-generator stay those of dest. Between two Sobol or two
 * Niederreiter streams the whole state moves, with all direction numbers. When a chunk cannot be copied, dest ends
 * without chunks. A dest that cannot go on from what it got, for want of chunks or because source is of another
 * generator, is seeded by an empty seed: KOB_ERROR_MEM_FAILURE, KOB_ERROR_BAD_ARG. */
int __kobCopyStreamState(KobStream* dest, const KobStream* source);

/* Makes the stream deliver every nstreams-th number of its sequence, beginning with the k-th from here
 * (k = 0, 1, ...). KOB_ERROR_LEAPFROG_NSTREAMS for a negative nstreams, KOB_ERROR_LEAPFROG_UNSUPPORTED when
 * the generator cannot. With nstreams 0 the stream stands still: it gives one number for ever. A leapfrog changes
 * the generator's multiplier to a power that nobody has chosen; docs/many-streams.md tells which bear it (WH, not
 * MCG31M1 and MCG59). */
int __kobLeapfrogStream(KobStream* stream, uint32_t k, int nstreams);

/* Moves the stream on by nskip of the numbers that it delivers (on a leapfrogged stream, its own numbers).
 * KOB_ERROR_SKIPAHEAD_UNSUPPORTED when the generator cannot. */
int __kobSkipAheadStream(KobStream* stream, uint64_t nskip);

/* The id that the stream was made with. */
int __kobGetStreamStateBrng(const KobStream* stream);

/* ---- chunks ---- */

/* Adds a chunk at the head of the list. `data` comes from orx_serv_allocate; on success the stream owns it. A
 * `global_id` (null for none) makes the block a shared one: when the process has a block of that name
 * already, the chunk takes that one and `data` stays the caller's; else the name is entered, as long as the
 * table has room, and the block is private when it has none. KOB_ERROR_MEM_FAILURE. */
int __kobAddChunk(KobStream* stream, uint32_t chunk_id, const KobGlobalId* global_id, void* data,
                  uint32_t size);

/* The data of the first chunk of that kind, null when there is none. */
void* __kobSearchChunk(const KobStream* stream, uint32_t chunk_id);

int __kobGetNumChunks(const KobStream* stream);

/* Adds copies of all chunks of source; shared blocks are shared. On failure dest ends without chunks. */
int __kobCopyChunks(KobStream* dest, const KobStream* source);

/* Frees all chunks. Returns 0. */
int __kobDeleteChunks(KobStream* stream);

/* ---- blocks shared between streams: a table of 128 in the process, counted references ---- */

typedef struct KobGlobalEntry {
  KobGlobalId EntryId;
  int32_t RefCount;
  void* Data;
  uint32_t Size; /* bytes of Data, 0 when it was not told */
} KobGlobalEntry;

/* KOB_ERROR_GLOBAL_ENTRY_NOT_FOUND for a null id, one that is all zero, or one that is not in the table. */
int __kobFindGlobRODataTableEntry(KobGlobalEntry** entry, const KobGlobalId* id);

/* A name that no entry has and that no other call in this process is given, whether it is entered or not: of the
 * time-stamp counter, or the number after the last name's if that is larger, and of the caller's value. May be called from
 * several threads at once. Returns 0. */
int __kobGenerateNewGlobalRODataTableEntryId(KobGlobalId* id, int32_t value);

/* Enters a block with one reference. KOB_ERROR_GLOBAL_TABLE_FULL. */
int __kobCreateGlobRODataTableEntry(KobGlobalEntry** entry, const KobGlobalId* id, void* data);

/* Makes a chunk share the block of that name. KOB_ERROR_GLOBAL_ENTRY_NOT_FOUND. */
int __kobRegisterGlobRODataReference(KobChunk* chunk, const KobGlobalId* id);

/* Gives one reference back; the last one frees the block. KOB_ERROR_GLOBAL_ENTRY_NOT_FOUND. */
int __kobUnregisterGlobRODataReference(const KobGlobalId* id);

/* ---- basic generators ----
 *
 * Every family has the four functions of its record. InitStream returns KOB_ERROR_METHOD for a method other
 * than 0, 1, 2. The block functions of pseudo generators cannot fail. Single-precision numbers are the
 * double-precision ones, rounded: those nearest to b come out as b, on [0, 1) once in 2^25. The caller's rounding
 * mode and treatment of denormals change no number. Small consecutive seeds make related streams of all but the
 * twisters: use orx_kob_spread_seed. */
#define KOB_BRNG_FUNCTIONS(Name)                                                                  \
  int __kobBRng##Name##InitStream(int method, KobStream* stream, int n, const uint32_t params[]); \
  int __kobsBRng##Name(KobStream* stream, int n, float r[], float a, float b);                    \
  int __kobdBRng##Name(KobStream* stream, int n, double r[], double a, double b);                 \
  int __kobiBRng##Name(KobStream* stream, int n, uint32_t r[]);

/* Multiplicative congruential generator modulo 2^31 - 1 with multiplier 1132489760 (L'Ecuyer, Math. Comp. 68,
 * 1999), period 2^31 - 2. Seed: params[0] mod (2^31 - 1), 0 counts as 1, as does an empty seed. Words:
 * 32-bit, 1 to 2^31 - 2. Leapfrog and skip. */
KOB_BRNG_FUNCTIONS(MCG31M1)

/* Multiplicative congruential generator modulo 2^59 with multiplier 13^13, period 2^57
 * for an odd seed; even seeds are taken as they are and have shorter ones. Seed: params[0] and the low 27
 * bits of params[1]; 0 counts as 1, as does an empty seed. Words: 64-bit, 59 of them significant. Leapfrog
 * and skip, neither of them to be recommended: numbers 2^e apart differ by a fixed multiple of 2^(e + 2), and streams
 * 2^55 apart by one constant for ever. It fails the test of birthday spacings. The largest 32 of its 2^59 numbers
 * are rounded to b. */
KOB_BRNG_FUNCTIONS(MCG59)

/* MRG32k3a, two combined recursions of order three (L'Ecuyer, Operations Research 47, 1999), period about
 * 2^191. Seed: up to six words, the missing ones are 1; a component of zeros gets a 1. Words: 32-bit, 0 to
 * 2^32 - 210. Skip, no leapfrog. */
KOB_BRNG_FUNCTIONS(MRG32K3A)

/* Generalized feedback shift register x(n) = x(n-147) xor x(n-250), which is x(n) = x(n-103) xor x(n-250) run
 * backwards (Kirkpatrick and Stoll, J. Comput. Phys. 40, 1981), period 2^250 - 1. Seed: 250 words as they
 * are, or one word that the register is filled from. Words: 32-bit. Neither leapfrog nor skip. */
KOB_BRNG_FUNCTIONS(R250)

/* 273 combined generators, each of four multiplicative congruential generators with moduli just below 2^24
 * (after Wichmann and Hill, Applied Statistics 31, 1982; N. M. MacLaren, Applied Statistics 38, 1989). Seed:
 * up to four words, each mod its modulus, missing ones and 0 count as 1. Words: four 32-bit values each.
 * Leapfrog and skip. */
KOB_BRNG_FUNCTIONS(WH)

/* Mersenne twister (Matsumoto and Nishimura, ACM Trans. Model. Comput. Simul. 8, 1998), period 2^19937 - 1.
 * Seed: a key of any length, all of it used, by the authors' initialisation by array; an empty key counts as
 * the word 1. Words: 32-bit. Neither leapfrog nor skip. */
KOB_BRNG_FUNCTIONS(MT19937)

/* 6024 Mersenne twisters of period 2^2203 - 1 with parameters of their own, and no common factor in their
 * characteristic polynomials, for independent streams (after the dynamic creation of Matsumoto and Nishimura,
 * Monte Carlo and Quasi-Monte Carlo Methods 1998, Springer 2000). Seed as MT19937, each sub-generator from a key
 * of its own: with the same seed the first several hundred words of two of them are related. Words: 32-bit. Neither
 * leapfrog nor skip. */
KOB_BRNG_FUNCTIONS(MT2203)

/* SIMD-oriented fast Mersenne twister (Saito and Matsumoto, Monte Carlo and Quasi-Monte Carlo Methods 2006,
 * Springer 2008), period a multiple of 2^19937 - 1. Seed as MT19937, by the authors' initialisation by array.
 * Words: 128-bit, four 32-bit words each, the lowest first. Neither leapfrog nor skip. Reals are made of the
 * 32-bit words one by one, but are taken from the sequence in whole 128-bit words: what a call for reals
 * leaves over goes to the next call for reals, and calls for words go on behind it. */
KOB_BRNG_FUNCTIONS(SFMT19937)

/* Quasi-random sequences: points of a chosen dimension, as far apart from each other as they can be, one
 * after the other, component by component. The words, 32-bit, are the components as fractions of 2^32; the
 * point of zeros is left out, so that the first is (1/2, ..., 1/2) unless the user's data say otherwise.
 * Block functions return KOB_ERROR_QRNG_PERIOD_ELAPSED, with nothing written, when the number of the current
 * point plus n passes 2^32 - 1: there are 2^32 - 2 points.
 *
 * Seed words: params[0] the dimension; what is not between 1 and the most becomes 1, without an error.
 * params[1] of 1 announces data of the user's, of the class params[2], from params[3] on. Data that are not
 * of a class below or too short count as none; a polynomial (bit i is the coefficient of x^i) of degree 0, or
 * of a higher degree than there are initial numbers for, is KOB_ERROR_BAD_ARG.
 *
 * Skip counts numbers. Leapfrog selects one component: nstreams must be 0x7FFFFFFF and k the component, else
 * KOB_ERROR_LEAPFROG_UNSUPPORTED; the stream then delivers component k of each point, beginning with the
 * first point of which nothing was delivered yet. KOB_ERROR_SKIPAHEAD_UNSUPPORTED when the skip would pass
 * the end. */

/* Sobol's sequence (USSR Comput. Math. Math. Phys. 7, 1967; P. Bratley, B. L. Fox, ACM Trans. Math. Softw.
 * 14, 1988), of dimension up to 40 by itself. The user's data, D the dimension:
 *
 * - class 1: polynomials of the dimensions from 2 on, of degree 8 at most; D <= 40;
 *
 * - class 2: e, how many initial numbers each dimension has, then so many for each from 2 on; D <= 40;
 *
 * - class 3: polynomials, e, initial numbers, for the dimensions from 2 on;
 *
 * - class 0xB: the same for the dimensions from 1 on;
 *
 * - class 4: 32 direction numbers for each dimension.
 *
 * Data of more than 40 dimensions, or of class 4, are kept in one block that copies of the stream share. */
KOB_BRNG_FUNCTIONS(Sobol)

/* Niederreiter's sequence in base 2 (P. Bratley, B. L. Fox, H. Niederreiter, ACM Trans. Model. Comput. Simul.
 * 2, 1992), of dimension up to 318 by itself. The user's data: class 1, an irreducible polynomial for each
 * dimension, or class 4, 32 direction numbers for each dimension. */
KOB_BRNG_FUNCTIONS(Niederr)

/* Abstract streams: the caller's numbers, from a ring buffer of n that counts as full at first and stays the
 * caller's for the life of the stream and its copies. When it has been read dry the stream calls
 *
 *   int refill(stream, &size, buffer, &wanted, &room, &position)
 *
 * from inside the block function, under rounding to nearest. It writes at least `wanted`, if it can, and at most `room` new numbers into
 * the buffer of `size` from place `position` on, going on at place 0 behind the end, and returns how many.
 * The three words behind `wanted` are 0 and reserved.
 *
 * Doubles and singles of the buffer are uniform on [a, b); the block function maps them to the interval that
 * it is asked for. Each kind has one block function that works, __kobiBRngiAbstract, __kobdBRngdAbstract,
 * __kobsBRngsAbstract; the others return KOB_ERROR_ABSTRACT_WRONG_KIND. KOB_ERROR_ABSTRACT_CALLBACK_FAILED
 * when refill returned a negative count or more than room, KOB_ERROR_ABSTRACT_CALLBACK_EMPTY when it returned
 * 0: the position in the ring is then as before the call. KOB_ERROR_NULL_PTR for a stream that was loaded,
 * which has no buffer. Neither leapfrog nor skip.
 *
 * New streams: KOB_ERROR_BAD_ARG when n is below 1, buffer or call-back null, or a not below b. */
typedef int (*KobiRefill)(KobStream* stream, uint32_t* size, uint32_t buffer[], uint32_t* wanted,
                          uint32_t* room, uint32_t* position);
typedef int (*KobdRefill)(KobStream* stream, uint32_t* size, double buffer[], uint32_t* wanted,
                          uint32_t* room, uint32_t* position);
typedef int (*KobsRefill)(KobStream* stream, uint32_t* size, float buffer[], uint32_t* wanted, uint32_t* room,
                          uint32_t* position);

int __kobiNewAbstractStream(KobStream** stream, int n, uint32_t ibuf[], KobiRefill icallback);
int __kobdNewAbstractStream(KobStream** stream, int n, double dbuf[], double a, double b,
                            KobdRefill dcallback);
int __kobsNewAbstractStream(KobStream** stream, int n, float sbuf[], float a, float b, KobsRefill scallback);

KOB_BRNG_FUNCTIONS(iAbstract)
KOB_BRNG_FUNCTIONS(dAbstract)
KOB_BRNG_FUNCTIONS(sAbstract)

/* True random numbers from the processor, by RDRAND. params[0] is ignored; params[1], unless 0 or missing, is
 * how often a draw that failed is tried again (10). Words: 32-bit; a double takes 64 bits. The second word of
 * the last draw is dropped when an odd number of words or singles is asked for. KOB_ERROR_TRNG_UNSUPPORTED
 * when the processor has no RDRAND, KOB_ERROR_TRNG_FAILED when it kept failing: the numbers so far stay.
 * Neither leapfrog nor skip. */
KOB_BRNG_FUNCTIONS(TRNG)

/* a^n mod m, for 0 < m; the exponent is n_low + 2^32 n_high. */
uint32_t __kobiPowMod(uint32_t a, uint32_t n_low, uint32_t n_high, uint32_t m);

/* a^n mod 2^31 - 1. */
uint32_t __kobiPowMod2P31M1(uint32_t a, uint32_t n_low, uint32_t n_high);

/* a^n mod 2^59. */
uint64_t __kobiPowMod2P59(uint32_t a_low, uint32_t a_high, uint32_t n_low, uint32_t n_high);

/* vector <- C^n vector mod m, C the companion matrix with top row `row`: one step of C makes the new first
 * element row . vector and moves the others down. */
void __kobiVect3PowMod(uint32_t vector[3], const uint32_t row[3], uint32_t m, uint32_t n_low,
                       uint32_t n_high);

/* Not 0 when the processor has RDRAND, which the true random generator draws from. */
int __kobCPUisRDRAND(void);

/* ---- saving and loading ----
 *
 * An image of a stream: a header of 16 bytes (format version 1, "RNG", header size, state size, number of
 * chunks, two bytes 0, generator id), the state, and per chunk its kind, the name of its shared block, its
 * size and its data; all little-endian, the same in a file and in memory. A loaded stream goes on as the
 * saved one would have. Images of states above 65535 bytes (registered generators) cannot be loaded, and of
 * more than 65535 chunks the rest is lost.
 *
 * A file name is `name_length` bytes long, or zero-terminated when name_length is negative. */

/* Bytes of the stream's image. */
int __kobGetStreamSize(const KobStream* stream);

/* KOB_ERROR_MEM_FAILURE, KOB_ERROR_FILE_OPEN, KOB_ERROR_FILE_WRITE, KOB_ERROR_FILE_CLOSE. A failure can leave
 * a part of the file. Of chunks only the last one's status is told. */
int __kobSaveStreamF(const KobStream* stream, const char* name, int name_length);

/* To memory of __kobGetStreamSize bytes. Returns 0. */
int __kobSaveStreamM(const KobStream* stream, void* memory);

/* A new stream from a file. A shared block is shared with one that the process has under its name only when the
 * contents are the same. The file may hold anything: KOB_ERROR_FILE_OPEN, KOB_ERROR_FILE_READ (too short;
 * chunks in the other byte order), KOB_ERROR_BAD_FILE_FORMAT (no image; a generator that is not there; a
 * state or a chunk that its generator could not use; a second chunk of a kind that the library knows),
 * KOB_ERROR_UNSUPPORTED_FILE_VER, KOB_ERROR_TRNG_UNSUPPORTED, KOB_ERROR_MEM_FAILURE, KOB_ERROR_FILE_CLOSE.
 * *stream is null after any failure. */
int __kobLoadStreamF(KobStream** stream, const char* name, int name_length);

/* The same from memory, with KOB_ERROR_BAD_MEM_FORMAT for what is wrong with the image. Its lengths are
 * believed: the image must be whole. */
int __kobLoadStreamM(KobStream** stream, const void* memory);

/* The steps of the above. `file` is a FILE*, `cursor` a KobCursor*; both sorts return 0, KOB_ERROR_FILE_WRITE
 * or KOB_ERROR_FILE_READ. */
typedef struct KobCursor {
  unsigned char* Base;
  uint32_t Position;
} KobCursor;

int __kobSaveToFile(void* buffer, uint32_t size, uint32_t count, void* file);
int __kobSaveToMemory(void* buffer, uint32_t size, uint32_t count, void* cursor);
int __kobLoadFromFile(void* buffer, uint32_t size, uint32_t count, void* file);
int __kobLoadFromMemory(void* buffer, uint32_t size, uint32_t count, void* cursor);
int __kobSkipLoadingFromFile(void* file, uint32_t bytes);
int __kobSkipLoadingFromMemory(void* cursor, uint32_t bytes);

/* ---- distributions ----
 *
 * All have the form name(method, stream, n, r, parameters...): n numbers to r, drawn from the stream. The low
 * bits of method choose an algorithm where there are several; bit 30 asks for the accurate mode. n of 0 or
 * less writes nothing. The generator's status is passed on; what was written before a failure stays. The
 * domain of parameters is the caller's to check. The caller's rounding mode and treatment of denormals change no
 * number; the thread's mode word, error call-back and error status of vector mathematics are afterwards as they
 * were before. */

/* Uniform reals on [a, b): a + (b - a) u, rounded. In the accurate mode the result is kept in [a, b]; without
 * it rounding can carry it to b or, by a last bit, past an end. */
int _kobdRngUniform(int method, KobStream* stream, int n, double r[], double a, double b);
int _kobsRngUniform(int method, KobStream* stream, int n, float r[], float a, float b);

/* Uniform integers a to b - 1: the whole part of a uniform real, never b. Of N words that the generator may give
 * (2^31 - 2 of MCG31M1, about 2^32 of the others, 2^53 of MCG59 and WH) each integer has its share to within one:
 * its probability is off 1 / (b - a) by less than 1 / N, which is seen in ranges of 2^24 and more. See
 * orx_kob_iRngUniformExact. */
int _kobiRngUniform(int method, KobStream* stream, int n, int32_t r[], int32_t a, int32_t b);

/* Uniform doubles of 53 random bits on [a, b), never b: a + (b - a) u, u a multiple of 2^-53 made of two words
 * of 32 bits, or of the upper bits of two of MCG59. From MCG59, R250, MT19937, MT2203, SFMT19937 and true random
 * streams, else KOB_ERROR_UNSUPPORTED_WORD_BITS; KOB_ERROR_BAD_ARG unless a < b. `method` is 0. A function of
 * this library's own, as is the next. */
int orx_kob_dRngUniform53(int method, KobStream* stream, int n, double r[], double a, double b);

/* Uniform integers a to b - 1 without any bias, by Lemire's method (ACM Trans. Model. Comput. Simul. 29, 2019),
 * two words of 32 bits each; words are refused less than once in 2^32. Generators and statuses as above;
 * KOB_ERROR_BAD_ARG also when nothing but refused words comes, as from a register of R250 that is all zeros. */
int orx_kob_iRngUniformExact(int method, KobStream* stream, int n, int32_t r[], int32_t a, int32_t b);

/* n words of the generator as they are. WordSize of the generator's record tells their length: one 32-bit
 * word each (MCG31M1: 31 bits), two for MCG59 (59 bits in the low end), four for SFMT19937 and WH. */
int _kobiRngUniformBits(int method, KobStream* stream, int n, uint32_t r[]);

/* n words of 32 or 64 bits that are uniformly distributed as a whole, from the generators that have such:
 * MCG59 (its upper bits), MT19937, MT2203, SFMT19937, true random. Two 32-bit words make a 64-bit one, the
 * earlier in the low half. Words of SFMT19937 that a call leaves of its last 128 bits are kept in the stream
 * for the next call of the same width. Other generators: KOB_ERROR_UNSUPPORTED_WORD_BITS, and the stream does
 * not move. */
int _kobiRngUniformBits32(int method, KobStream* stream, int n, uint32_t r[]);
int _kobiRngUniformBits64(int method, KobStream* stream, int n, uint64_t r[]);

/* 1 with probability p, else 0: whether a uniform of single precision is below p. 0 <= p <= 1. */
int _kobiRngBernoulli(int method, KobStream* stream, int n, int32_t r[], double p);

/* The number of failures before the first success: P(k) = p (1 - p)^k, k = 0, 1, ..., by inversion,
 * floor(ln u / ln(1 - p)) in single precision; what is beyond 2^31 - 1 becomes that. 0 < p < 1. */
int _kobiRngGeometric(int method, KobStream* stream, int n, int32_t r[], double p);

/* ---- continuous distributions ----
 *
 * Each has a double and a single form, _kobdRng... and _kobsRng..., which differ in nothing but the precision of
 * numbers, parameters and arithmetic. a displaces and beta > 0 scales: the density is that of a + beta x. Where x has
 * a lower end, no number falls below it. A uniform of exactly 0 counts as the smallest positive number, so that
 * nothing is infinite. Logarithms and the like are of the fast class: values are right to 26 bits in double and 11
 * in single precision. docs/generators.md has the table of laws, methods, costs and papers.
 *
 * Unless it is said otherwise, method has no meaning, a number takes one uniform of the stream, and the numbers do
 * not depend on the cuts into calls. */

/* Normal with mean a and standard deviation sigma. Method 0: Box and Muller (1958), one number of two uniforms;
 * 1: the same with both numbers of each pair of uniforms, sine half first; the second half of an odd request is the
 * first number of the next one, through copies and images of the stream too; 2: by the inverse of the distribution
 * function, one uniform a number. Other methods: KOB_ERROR_METHOD. KOB_ERROR_MEM_FAILURE (method 1). A uniform of
 * 0 gives by method 2 a - 0.767 sqrt(2) sigma (single precision: a - 1.084 sqrt(2) sigma). */
int _kobdRngGaussian(int method, KobStream* stream, int n, double r[], double a, double sigma);
int _kobsRngGaussian(int method, KobStream* stream, int n, float r[], float a, float sigma);

/* b + beta e^x, x normal with mean a and deviation sigma: of Gaussian method 1 for method 0, 2 for any other. */
int _kobdRngLognormal(int method, KobStream* stream, int n, double r[], double a, double sigma, double b,
                      double beta);
int _kobsRngLognormal(int method, KobStream* stream, int n, float r[], float a, float sigma, float b,
                      float beta);

/* Exponential: density e^-x for x >= 0. */
int _kobdRngExponential(int method, KobStream* stream, int n, double r[], double a, double beta);
int _kobsRngExponential(int method, KobStream* stream, int n, float r[], float a, float beta);

/* Cauchy: density 1 / (pi (1 + x^2)). */
int _kobdRngCauchy(int method, KobStream* stream, int n, double r[], double a, double beta);
int _kobsRngCauchy(int method, KobStream* stream, int n, float r[], float a, float beta);

/* Laplace: density e^-|x| / 2. Two uniforms a number. */
int _kobdRngLaplace(int method, KobStream* stream, int n, double r[], double a, double beta);
int _kobsRngLaplace(int method, KobStream* stream, int n, float r[], float a, float beta);

/* Rayleigh: density 2 x e^(-x^2) for x >= 0; the deviation of the normal numbers behind it is beta / sqrt(2). */
int _kobdRngRayleigh(int method, KobStream* stream, int n, double r[], double a, double beta);
int _kobsRngRayleigh(int method, KobStream* stream, int n, float r[], float a, float beta);

/* Weibull: density alpha x^(alpha - 1) e^(-x^alpha) for x >= 0, alpha > 0. */
int _kobdRngWeibull(int method, KobStream* stream, int n, double r[], double alpha, double a, double beta);
int _kobsRngWeibull(int method, KobStream* stream, int n, float r[], float alpha, float a, float beta);

/* Gumbel, of smallest values: density e^(x - e^x). */
int _kobdRngGumbel(int method, KobStream* stream, int n, double r[], double a, double beta);
int _kobsRngGumbel(int method, KobStream* stream, int n, float r[], float a, float beta);

/* Gamma with shape alpha: density x^(alpha - 1) e^-x / Gamma(alpha) for x >= 0. alpha above 1: Marsaglia and Tsang
 * (2000), by normal numbers of Box-Muller pairs, the odd one of which waits in the stream for the next call
 * (KOB_ERROR_MEM_FAILURE), and one more uniform a try; 1: exponential; 0.6 up to below 1: rejection from the Weibull law
 * (Vaduva 1977); below 0.6: from a power law with a Weibull tail (Devroye 1986), two uniforms a try. Numbers too
 * small for their type are 0. KOB_ERROR_BAD_ARG where alpha is not positive and finite. */
int _kobdRngGamma(int method, KobStream* stream, int n, double r[], double alpha, double a, double beta);
int _kobsRngGamma(int method, KobStream* stream, int n, float r[], float alpha, float a, float beta);

/* Beta with shapes p and q: density x^(p - 1) (1 - x)^(q - 1) / B(p, q) on [0, 1]; no number is beyond a + beta. Both
 * below 1: Johnk (1964) or Atkinson and Whittaker (1976), whichever is faster; one below: Atkinson and Whittaker
 * (1979); both above: Cheng (1978), all with two uniforms a try; one or both equal to 1: inversion, one uniform, and bit
 * 30 of method acts on the uniform of p = q = 1. KOB_ERROR_BAD_ARG where a shape is not positive and finite. */
int _kobdRngBeta(int method, KobStream* stream, int n, double r[], double p, double q, double a, double beta);
int _kobsRngBeta(int method, KobStream* stream, int n, float r[], float p, float q, float a, float beta);

/* ---- discrete distributions ----
 *
 * What is made ready for a set of parameters is kept in the stream, and used as long as they stay; numbers do not depend
 * on that. Numbers by inversion take one uniform each and do not depend on the cuts into calls, those by rejection take
 * two uniforms of single precision a try. A law that has one value only takes no uniform. Numbers beyond 2^31 - 1
 * become that. KOB_ERROR_MEM_FAILURE. */

/* Successes in so many trials, each with probability p: C(trials, k) p^k (1 - p)^(trials - k). min(p, 1 - p) trials of
 * 30 or more: algorithm BTPE (Kachitvichyanukul and Schmeiser 1988); below: inversion. */
int _kobiRngBinomial(int method, KobStream* stream, int n, int32_t r[], int32_t trials, double p);

/* Poisson with that mean: e^-mean mean^k / k!. Method 0: exact, by inversion below a mean of 27, by algorithm PTPE
 * (Schmeiser and Kachitvichyanukul 1981) from there on. Method 1: the whole part of a polynomial in a normal number of
 * single precision, one uniform a number; not exact, the total variation from the law is below 1e-4 for means up to 1e6
 * (below a mean of 1 by inversion). A mean below 0 counts as 0. Other methods: KOB_ERROR_METHOD. */
int _kobiRngPoisson(int method, KobStream* stream, int n, int32_t r[], double mean);

/* The same for n means, each number with its own, by method 1. */
int _kobiRngPoissonV(int method, KobStream* stream, int n, int32_t r[], const double means[]);

/* Marked items in a sample without replacement from a lot with so many marked ones: C(marked, k) C(lot - marked,
 * sample - k) / C(lot, sample). Mode 40 or more above the least number, after folding: algorithm H2PE
 * (Kachitvichyanukul and Schmeiser 1985); else inversion. */
int _kobiRngHypergeometric(int method, KobStream* stream, int n, int32_t r[], int32_t lot, int32_t sample,
                           int32_t marked);

/* Failures before success number a, for any a > 0: C(a + k - 1, k) p^a (1 - p)^k, 0 < p <= 1. (a - 1) (1 - p) / p of
 * 100 or more: rejection; below: inversion where a table of its size plus 64 holds 98% of the probability, else
 * rejection for a of 1 or more and a Poisson number of a gamma mean for a below 1. KOB_ERROR_BAD_ARG for parameters
 * that are none. */
int _kobiRngNegbinomial(int method, KobStream* stream, int n, int32_t r[], double a, double p);

/* ---- vectors of normal numbers ----
 *
 * n vectors of dimen components to r, vector after vector: normal with mean a and the covariance whose Cholesky factor t
 * is, from independent numbers by that method of Gaussian, n dimen of them in the order of r. t by mstorage: 0 the upper
 * triangle of a full matrix, column by column, whose transpose multiplies (covariance t' t); 1 the lower triangle packed
 * by columns, which multiplies as it is (t t'); 2 its diagonal. With any other mstorage r holds the independent numbers.
 * Of dimen 1 it is Gaussian with mean a[0] and deviation t[0]. Statuses are those of Gaussian. */
int _kobdRngGaussianMV(int method, KobStream* stream, int n, double r[], int dimen, int mstorage,
                       const double a[], const double t[]);
int _kobsRngGaussianMV(int method, KobStream* stream, int n, float r[], int dimen, int mstorage,
                       const float a[], const float t[]);

/* The inverse of a symmetric positive definite p by p matrix in its place: of p up to 3 by cofactors, without a check
 * (infinities where the determinant is 0); from 4 on by Cholesky's factor, the upper triangle alone, column by column. When
 * that factor does not exist the matrix is given back by orx_serv_deallocate and the status is
 * KOB_SS_ERROR_INVERSE_FACTOR (-5041); when it cannot be inverted, KOB_SS_ERROR_INVERSE (-5042) and the matrix stays the
 * caller's. */
int __kobdInvCov(int p, double matrix[]);
int __kobsInvCov(int p, float matrix[]);

#ifdef __cplusplus
}
#endif

#endif
