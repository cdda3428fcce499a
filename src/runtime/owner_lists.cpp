// Owner lists: singly linked lists with head, tail and count, one per storage class.
#include "runtime/owner_lists.h"

#include "runtime/memory.h"

namespace zq::runtime {

void appendToList(OwnerList &list, pObj rec) {
    rec->next = nullptr;
    if (list.tail)
        list.tail->next = rec;
    else
        list.head = rec;
    list.tail = rec;
    ++list.count;
}

pObj unlinkFromList(OwnerList &list, pObj rec) {
    pObj previous = nullptr;
    for (pObj p = list.head; p && p != rec; p = p->next)
        previous = p;
    pObj following = rec->next;
    if (previous)
        previous->next = following;
    else if (list.head == rec)
        list.head = following;
    if (list.tail == rec)
        list.tail = previous;
    if (--list.count <= 0) {
        list.count = 0;
        list.head = list.tail = nullptr;
        return nullptr;
    }
    return following;
}

void releaseText(pObj rec) {
    if (rec->type == TYPE_CHAR && rec->objLength > 0)
        release(rec->payload.c);
    if (rec->type == TYPE_CHAR) {
        rec->payload.c = nullptr;
        rec->objLength = -1;
    }
}

namespace {

void releaseArrayObject(pObj array) {
    if (ArrayHeader *header = array->payload.a) {
        for (pObj el = header->first; el;) {
            pObj next = el->next;
            if (el->type != TYPE_ARRAY)
                releaseText(el);
            release(el);
            el = next;
        }
        release(header);
    }
    release(array);
}

} // namespace

void releaseAllOwnedRecords(RuntimeContext &ctx) {
    OwnerList &arrays = ctx.lists[kArrayList];
    for (pObj a = arrays.head; a;) {
        pObj next = a->next;
        releaseArrayObject(a);
        a = next;
    }
    arrays = OwnerList{nullptr, nullptr, 0, arrays.recordSize, arrays.constructor};
    OwnerList &vars = ctx.lists[kVariableList];
    for (pObj v = vars.head; v;) {
        pObj next = v->next;
        releaseText(v);
        release(v);
        v = next;
    }
    vars = OwnerList{nullptr, nullptr, 0, vars.recordSize, vars.constructor};
}

} // namespace zq::runtime
