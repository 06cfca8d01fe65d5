#include "play/engine_memory.h"

#include <sqlite3.h>

#include <cstddef>

#ifdef __SANITIZE_ADDRESS__
// The C library's own, which the sanitizer does not stand in for.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);
}
#endif

namespace molven::play {

#ifdef __SANITIZE_ADDRESS__
namespace {

/// Stands before each block; as large as what a block is aligned to.
struct alignas(std::max_align_t) Size {
    int bytes;
};

void* behind(Size* size, int bytes) {
    if (!size) return nullptr;
    size->bytes = bytes;
    return size + 1;
}

Size* before(void* block) { return static_cast<Size*>(block) - 1; }

void* allocate(int bytes) { return behind(static_cast<Size*>(__libc_malloc(sizeof(Size) + bytes)), bytes); }
void release(void* block) { __libc_free(before(block)); }
int sizeOf(void* block) { return block ? before(block)->bytes : 0; }
int rounded(int bytes) { return (bytes + 7) & ~7; }
int begin(void*) { return SQLITE_OK; }
void end(void*) {}

void* resize(void* block, int bytes) {
    return behind(static_cast<Size*>(__libc_realloc(before(block), sizeof(Size) + bytes)), bytes);
}

} // namespace

void leaveEngineUnwatched() {
    static const sqlite3_mem_methods memory = {allocate, release, resize, sizeOf, rounded, begin, end, nullptr};
    sqlite3_config(SQLITE_CONFIG_MALLOC, &memory);
}
#else
void leaveEngineUnwatched() {}
#endif

} // namespace molven::play
