// The fake browser's books.
#include "tests/support/Ledger.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <sstream>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#endif

namespace support {
namespace {

constexpr int kDeadByte = 0xDD;

void Poison([[maybe_unused]] void* block, [[maybe_unused]] std::size_t size) {
    std::memset(block, kDeadByte, size);
#if defined(__SANITIZE_ADDRESS__)
    ASAN_POISON_MEMORY_REGION(block, size);
#endif
}

void FreePoisoned(void* block, [[maybe_unused]] std::size_t size) {
#if defined(__SANITIZE_ADDRESS__)
    ASAN_UNPOISON_MEMORY_REGION(block, size);
#endif
    std::free(block);
}

std::string Address(const void* pointer) {
    std::ostringstream text;
    text << pointer;
    return text.str();
}

std::string Preview(const void* block, std::size_t size) {
    const std::string bytes(static_cast<const char*>(block), std::min<std::size_t>(size, 40));
    std::string shown;
    for (const char byte : bytes) {
        shown += std::isprint(static_cast<unsigned char>(byte)) != 0 ? byte : '.';
    }
    return '"' + shown + '"';
}

}  // namespace

Ledger::~Ledger() {
    for (NPObject* handle : m_handles) {
        FreePoisoned(handle, sizeof(NPObject));
    }
    for (const auto& [block, record] : m_blocks) {
        FreePoisoned(block, record.size);
    }
}

NPObject* Ledger::MakeHandle(NPClass* handleClass) {
    auto* handle = static_cast<NPObject*>(std::malloc(sizeof(NPObject)));
    *handle = {handleClass, 0};
    return handle;
}

void Ledger::AddObject(NPObject* object, const std::string& name, bool ofPlugin) {
    object->referenceCount = 1;
    m_objects[object] = {Unique(name), ofPlugin, true, 1, 0, 0};
    if (!ofPlugin) {
        m_handles.push_back(object);
    }
}

std::string Ledger::Unique(const std::string& name) {
    const unsigned number = ++m_names[name];
    return number == 1 ? name : name + "#" + std::to_string(number);
}

const Ledger::Record* Ledger::Find(NPObject* object) const {
    const auto found = m_objects.find(object);
    return found == m_objects.end() ? nullptr : &found->second;
}

bool Ledger::Check(const std::string& function, NPObject* object) {
    const Record* record = Find(object);
    if (object == nullptr) {
        ADD_FAILURE() << function << " was given a null pointer for an object.";
    } else if (record == nullptr) {
        ADD_FAILURE() << function << " was given " << object << ", which is no object.";
    } else if (!record->alive) {
        ADD_FAILURE() << function << " was given " << record->name << ", which is dead already.";
    } else if (object->referenceCount != record->references) {
        ADD_FAILURE() << "The reference count of " << record->name << " was changed behind the browser's back.";
    } else {
        return true;
    }
    return false;
}

void Ledger::Retain(const std::string& function, NPObject* object) {
    if (Check(function, object)) {
        object->referenceCount = ++m_objects[object].references;
    }
}

void Ledger::Release(const std::string& function, NPObject* object) {
    if (!Check(function, object)) {
        return;
    }
    Record& record = m_objects[object];
    if (record.references == record.page) {
        ADD_FAILURE() << function << " gives back a reference of " << record.name << " that the plug-in does not hold.";
        return;
    }
    DropReference(object, record);
}

void Ledger::DropReference(NPObject* object, Record& record) {
    object->referenceCount = --record.references;
    if (record.references == 0) {
        record.alive = false;
        Bury(object, record);
    }
}

void Ledger::Bury(NPObject* object, const Record& record) {
    if (!record.ofPlugin) {
        Poison(object, sizeof(NPObject));
    } else if (object->_class->deallocate != nullptr) {
        object->_class->deallocate(object);
    } else {
        std::free(object);
    }
}

void Ledger::Hold(NPObject* object) {
    if (Check("The page", object)) {
        Record& record = m_objects[object];
        object->referenceCount = ++record.references;
        ++record.page;
    }
}

void Ledger::TakeOver(const std::string& function, NPObject* object) {
    if (!Check(function, object)) {
        return;
    }
    Record& record = m_objects[object];
    if (record.references == record.page) {
        ADD_FAILURE() << function << " hands out " << record.name << " without a reference for the browser.";
        object->referenceCount = ++record.references;
    }
    ++record.page;
}

void Ledger::Drop(NPObject* object) {
    const Record* found = Find(object);
    if (found != nullptr && found->alive && found->page != 0) {
        Record& record = m_objects[object];
        --record.page;
        DropReference(object, record);
    }
}

unsigned Ledger::HeldByPage(NPObject* object) const {
    const Record* record = Find(object);
    return record != nullptr && record->alive ? record->page : 0;
}

bool Ledger::IsAlive(NPObject* object) const {
    const Record* record = Find(object);
    return record != nullptr && record->alive;
}

bool Ledger::IsOfPlugin(NPObject* object) const {
    const Record* record = Find(object);
    return record != nullptr && record->ofPlugin;
}

unsigned Ledger::HeldByPlugin(NPObject* object) const {
    const Record* record = Find(object);
    return record != nullptr && record->alive ? record->references - record->page : 0;
}

std::string Ledger::NameOf(NPObject* object) const {
    const Record* record = Find(object);
    return record != nullptr ? record->name : "no object (" + Address(object) + ")";
}

std::vector<NPObject*> Ledger::Objects() const {
    std::vector<NPObject*> objects;
    for (const auto& [object, record] : m_objects) {
        if (record.alive) {
            objects.push_back(object);
        }
    }
    return objects;
}

void* Ledger::Allocate(std::size_t size) {
    void* block = std::malloc(size);
    m_blocks[block] = {size, true};
    return block;
}

char* Ledger::AllocateText(const std::string& text) {
    auto* block = static_cast<char*>(Allocate(text.size()));
    text.copy(block, text.size());
    return block;
}

void Ledger::Free(const std::string& function, void* block) {
    const auto found = m_blocks.find(block);
    if (found == m_blocks.end()) {
        ADD_FAILURE() << function << " was given " << block << ", which is no block of browser memory.";
    } else if (!found->second.used) {
        ADD_FAILURE() << function << " frees a block of " << found->second.size << " bytes for the second time.";
    } else {
        found->second.used = false;
        Poison(block, found->second.size);
    }
}

std::size_t Ledger::BlocksInUse() const {
    std::size_t count = 0;
    for (const auto& block : m_blocks) {
        count += block.second.used ? 1 : 0;
    }
    return count;
}

void Ledger::MayKeep(NPObject* object, unsigned references) {
    if (Check("MayKeep", object)) {
        m_objects[object].mayKeep = references;
    }
}

void Ledger::ExpectBalanced() const {
    ExpectObjectsBalanced();
    ExpectBlocksBalanced();
}

void Ledger::ExpectObjectsBalanced() const {
    for (const auto& [object, record] : m_objects) {
        const unsigned held = record.alive ? record.references - record.page : 0;
        if (held > record.mayKeep) {
            ADD_FAILURE() << "The plug-in still holds " << held << " reference(s) of " << record.name << ".";
        }
    }
}

void Ledger::ExpectBlocksBalanced() const {
    if (BlocksInUse() <= m_keptBlocks) {
        return;
    }
    for (const auto& [block, record] : m_blocks) {
        if (record.used) {
            ADD_FAILURE() << "A block of " << record.size
                          << " bytes of browser memory was not freed: " << Preview(block, record.size);
        }
    }
}

}  // namespace support
