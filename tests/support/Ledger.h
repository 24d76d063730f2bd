// The fake browser's books: every script object with its references, every block of browser memory.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "npapi/npruntime.h"

namespace support {

// A wrong use is a test failure at once, naming the object or block and the function; it is then not done. Nothing is
// given back to the allocator before the test ends, so no address is used twice and a late use meets a poisoned block.
// References are the plug-in's or the page's: the plug-in cannot give back what it does not hold.
class Ledger {
public:
    Ledger() = default;
    Ledger(const Ledger&) = delete;
    Ledger& operator=(const Ledger&) = delete;
    ~Ledger();

    // Enters an object with one reference, the plug-in's. A script object of the fake browser was made with
    // MakeHandle; any other is the plug-in's and dies through its class.
    void AddObject(NPObject* object, const std::string& name, bool ofPlugin);
    static NPObject* MakeHandle(NPClass* handleClass);

    // True when `object` may be used; otherwise the failure is reported.
    bool Check(const std::string& function, NPObject* object);
    void Retain(const std::string& function, NPObject* object);
    void Release(const std::string& function, NPObject* object);

    // The page takes a reference, takes over one of the plug-in's, or drops one of its own.
    void Hold(NPObject* object);
    void TakeOver(const std::string& function, NPObject* object);
    void Drop(NPObject* object);
    unsigned HeldByPage(NPObject* object) const;

    bool IsAlive(NPObject* object) const;
    bool IsOfPlugin(NPObject* object) const;
    unsigned HeldByPlugin(NPObject* object) const;
    std::string NameOf(NPObject* object) const;
    // All that are alive.
    std::vector<NPObject*> Objects() const;

    void* Allocate(std::size_t size);
    void Free(const std::string& function, void* block);
    // A block for a string that is handed to the plug-in: exactly its bytes, no terminator.
    char* AllocateText(const std::string& text);
    std::size_t BlocksInUse() const;

    // What the plug-in may still hold when the balance is checked.
    void MayKeep(NPObject* object, unsigned references);
    void MayKeepBlocks(std::size_t blocks) { m_keptBlocks = blocks; }
    // Fails the test for each object and block that the plug-in holds beyond that.
    void ExpectBalanced() const;

private:
    struct Record {
        std::string name;
        bool ofPlugin = false;
        bool alive = true;
        unsigned references = 0;  // all, as in the object's header
        unsigned page = 0;        // of them, the page's
        unsigned mayKeep = 0;
    };
    struct Block {
        std::size_t size = 0;
        bool used = true;
    };

    const Record* Find(NPObject* object) const;
    void DropReference(NPObject* object, Record& record);
    void Bury(NPObject* object, const Record& record);
    void ExpectObjectsBalanced() const;
    void ExpectBlocksBalanced() const;
    std::string Unique(const std::string& name);

    std::map<NPObject*, Record> m_objects;
    std::map<void*, Block> m_blocks;
    std::map<std::string, unsigned> m_names;
    std::vector<NPObject*> m_handles;
    std::size_t m_keptBlocks = 0;
};

}  // namespace support
