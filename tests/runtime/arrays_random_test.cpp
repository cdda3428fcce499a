// A long randomized run: contexts entered and left, arrays built, nested, sorted, copied,
// cloned, moved and dropped. After every context the arrays alive must agree with their
// chains and lock counts, and the allocation balance must be explained by what is alive;
// after the end of the run nothing is left.
#include "runtime/arrays_support.h"
#include "runtime/context.h"
#include "runtime/memory.h"

#include <map>
#include <random>
#include <set>

namespace {

using namespace zq::runtime;
using namespace zq::test;

int32_t textAllocations(pObj r) { return r->type == TYPE_CHAR && r->objLength > 0 && r->payload.c ? 1 : 0; }

// Allocations the live records account for: context, ring, constants, frames and lists.
int32_t explainedAllocations() {
    RuntimeContext &ctx = context();
    int32_t n = 1 + 2 + 1; // the context, the ring's two blocks, the empty text constant
    for (DebugFrame *f = ctx.frames; f; f = f->next)
        ++n;
    for (int32_t i = 0; i < ctx.temporaryCount; ++i)
        n += textAllocations(ctx.temporaries[i]);
    for (pObj v = ctx.lists[kVariableList].head; v; v = v->next)
        n += 1 + textAllocations(v);
    for (pObj a = ctx.lists[kArrayList].head; a; a = a->next) {
        n += 1 + (a->payload.a ? 1 : 0);
        for (pObj el = a->payload.a ? a->payload.a->first : nullptr; el; el = el->next)
            n += 1 + textAllocations(el);
    }
    return n;
}

// Every array alive: chain and header agree, nested references point at live arrays,
// and each lock count is the number of elements referring to the array.
void checkArrays() {
    RuntimeContext &ctx = context();
    std::set<pObj> alive;
    std::map<pObj, int> references;
    int32_t elements = 0, arrays = 0;
    for (pObj a = ctx.lists[kArrayList].head; a; a = a->next, ++arrays)
        alive.insert(a);
    ASSERT_EQ(arrays, ctx.lists[kArrayList].count);
    for (pObj a : alive) {
        ArrayHeader *h = a->payload.a;
        ASSERT_NE(h, nullptr);
        int32_t count = 0;
        pObj last = nullptr;
        for (pObj el = h->first; el; el = el->next, ++count) {
            ASSERT_EQ(el->storageClass, CLASS_ELEMENT);
            if (el->type == TYPE_ARRAY) {
                ASSERT_TRUE(alive.count(el->payload.o)) << "a nested array was released while referred to";
                ++references[el->payload.o];
            }
            last = el;
        }
        ASSERT_EQ(count, h->count);
        ASSERT_EQ(last, h->last);
        elements += count;
    }
    for (pObj a : alive)
        ASSERT_EQ(a->lockCount, references[a]);
    ASSERT_EQ(elements, ctx.lists[kElementList].count);
}

class RandomRun {
public:
    explicit RandomRun(unsigned seed) : rng_(seed) {}

    // Batches of rounds inside one context: the roots live there, and ending it must
    // leave no array behind.
    void run(int batches, int rounds) {
        for (int batch = 0; batch < batches; ++batch) {
            __begin_context();
            roots_.clear();
            for (int i = 0; i < 6; ++i)
                roots_.push_back(numbers({}));
            for (int round = 0; round < rounds; ++round) {
                __begin_context();
                body(3);
                __end_context(nullptr);
                checkArrays();
                ASSERT_EQ(allocationBalance() - baseline_, explainedAllocations()) << "round " << round;
                for (pObj root : roots_)
                    if (__Array_Get_Amnt_Itens(root) > 40)
                        __ASize(root, __INIT_DOUBLE(pick(10)));
            }
            __end_context(nullptr);
            ASSERT_EQ(context().lists[kArrayList].count, 0);
            ASSERT_EQ(context().lists[kElementList].count, 0);
            ASSERT_EQ(allocationBalance() - baseline_, explainedAllocations());
        }
    }

    int32_t baseline_ = 0;

private:
    int pick(int n) { return static_cast<int>(rng_() % static_cast<unsigned>(n)); }

    pObj scalar() {
        switch (pick(4)) {
        case 0: return __INIT_DOUBLE(pick(50));
        case 1: return __INIT_CHARPTR(std::string(static_cast<size_t>(pick(6)), char('a' + pick(26))).c_str());
        case 2: return __INIT_BOOL(pick(2));
        default: return __INIT_NIL();
        }
    }

    // True when to is from itself or nested (at any level) inside it.
    static bool reaches(pObj from, pObj to) {
        if (from == to)
            return true;
        for (pObj el = from->payload.a->first; el; el = el->next)
            if (el->type == TYPE_ARRAY && reaches(el->payload.o, to))
                return true;
        return false;
    }

    // A row {number, text}: the shape sorted and scanned by column.
    pObj row() { return __CreateArray(__INIT_DOUBLE(pick(30)), __INIT_CHARPTR(pick(2) ? "x" : "yy"), __INIT_NUL()); }

    pObj table() {
        pObj t = numbers({});
        for (int i = pick(12); i > 0; --i)
            __AAdd(t, row());
        return t;
    }

    pObj anyArray(const std::vector<pObj> &locals) {
        if (!locals.empty() && pick(2))
            return locals[static_cast<size_t>(pick(static_cast<int>(locals.size())))];
        return roots_[static_cast<size_t>(pick(static_cast<int>(roots_.size())))];
    }

    // One context's work; returns an array handed out to the caller, or null.
    pObj body(int depth) {
        std::vector<pObj> locals, tables;
        for (int step = pick(25); step > 0; --step) {
            switch (pick(12)) {
            case 0: locals.push_back(__CreateArray(scalar(), scalar(), __INIT_NUL())); break;
            case 1: tables.push_back(table()); break; // tables are only sorted, scanned, copied and kept
            case 2: {
                pObj into = anyArray(locals), what = anyArray(locals);
                if (pick(3) || reaches(what, into))
                    what = scalar(); // no cycles: lock counts never free those
                __AAdd(into, what);
                break;
            }
            case 3: __ASize(anyArray(locals), __INIT_DOUBLE(pick(8))); break;
            case 4: __AIns(anyArray(locals), __INIT_DOUBLE(pick(6))); break;
            case 5: __ADel(anyArray(locals), __INIT_DOUBLE(pick(6))); break;
            case 6:
                if (!tables.empty()) {
                    pObj t = tables[static_cast<size_t>(pick(static_cast<int>(tables.size())))];
                    __ASORT(t, nullptr, nullptr, __INIT_BOOL(pick(2)), __INIT_DOUBLE(1 + pick(2)));
                    __AScan(t, __INIT_DOUBLE(pick(30)), nullptr, nullptr, __INIT_DOUBLE(1));
                }
                break;
            case 7: {
                pObj from = !tables.empty() && pick(2) ? tables.back() : anyArray(locals);
                locals.push_back(pick(2) ? __AClone(from) : __CopyArray(from));
                break;
            }
            case 8:
                if (!tables.empty()) // keep it: it now belongs to the outer run
                    __AAdd(roots_[static_cast<size_t>(pick(static_cast<int>(roots_.size())))], tables.back());
                break;
            case 9:
                if (locals.size() >= 2 && !reaches(locals.back(), locals.front())) {
                    // Array assigned to array: the source goes when nothing holds it. (A
                    // source holding the target would leave the target holding itself.)
                    pObj source = locals.back(), target = locals.front();
                    // The target's old elements are dropped, with any references to source.
                    int held = source->lockCount;
                    for (pObj el = target->payload.a->first; el; el = el->next)
                        held -= el->type == TYPE_ARRAY && el->payload.o == source;
                    bool released = source != target && held == 0 && source->depth >= context().depth;
                    __SET_OBJECT(target, source);
                    if (released)
                        locals.pop_back();
                }
                break;
            case 10:
                if (depth < 7) {
                    __begin_context();
                    pObj inner = body(depth + 1);
                    pObj handed = __end_context(inner);
                    if (handed)
                        locals.push_back(handed);
                }
                break;
            default: {
                pObj scratch = __SET_OBJECT(nullptr, scalar());
                (void)scratch; // a variable the context releases
                break;
            }
            }
        }
        return locals.empty() || pick(3) == 0 ? nullptr : locals[static_cast<size_t>(pick(static_cast<int>(locals.size())))];
    }

    std::mt19937 rng_;
    std::vector<pObj> roots_;
};

TEST(ArraysRandomRun, ContextsLeaveOnlyWhatIsAliveAndTheEndLeavesNothing) {
    zq::test::UnattendedBoxes boxes;
    for (unsigned seed : {1u, 2u}) {
        const int32_t before = allocationBalance();
        __BeginGlobal();
        RandomRun run(seed);
        run.baseline_ = before;
        run.run(12, 80);
        if (::testing::Test::HasFatalFailure())
            return;
        __EndGlobal();
        EXPECT_EQ(allocationBalance(), before) << "seed " << seed;
    }
    EXPECT_TRUE(boxes.lines().empty());
}

} // namespace
