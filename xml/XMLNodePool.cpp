// A per-thread pool of node-sized blocks. Parsing a notice message allocates a few dozen nodes and frees
// them moments later; recycling the blocks keeps that off the general allocator. A block freed on
// another thread simply joins that thread's pool. The pool keeps a bounded number of blocks and returns
// the rest (and everything at thread exit) to the general allocator.
#include "xml/djlpXML.h"

#include <new>

namespace {

// Under AddressSanitizer a recycled block would hide a node used after it was freed: nothing is pooled.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define NB_ADDRESS_SANITIZER 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(NB_ADDRESS_SANITIZER)
constexpr bool PoolBlocks = false;
#else
constexpr bool PoolBlocks = true;
#endif
constexpr size_t MaxPooledBlocks = 4096;

struct TFreeBlock {
    TFreeBlock* Next;
};

struct TNodePool {
    TFreeBlock* Head = nullptr;
    size_t Count = 0;
    ~TNodePool();
};

// Set when this thread's pool is gone (nodes freed during thread or program exit after it).
thread_local bool PoolGone = false;
thread_local TNodePool Pool;

TNodePool::~TNodePool() {
    PoolGone = true;
    while (Head) {
        TFreeBlock* next = Head->Next;
        ::operator delete(Head);
        Head = next;
    }
}

} // namespace

void* TXMLNode::operator new(size_t Size) {
    if (Size == sizeof(TXMLNode) && !PoolGone && Pool.Head) {
        TFreeBlock* block = Pool.Head;
        Pool.Head = block->Next;
        --Pool.Count;
        return block;
    }
    return ::operator new(Size);
}

void TXMLNode::operator delete(void* Block, size_t Size) noexcept {
    if (!Block) return;
    if (PoolBlocks && Size == sizeof(TXMLNode) && !PoolGone && Pool.Count < MaxPooledBlocks) {
        auto* free = static_cast<TFreeBlock*>(Block);
        free->Next = Pool.Head;
        Pool.Head = free;
        ++Pool.Count;
        return;
    }
    ::operator delete(Block);
}
