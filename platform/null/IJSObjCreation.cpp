// One key for every object. It proves nothing: page classes that must know who made them need a secret one.
#include "platform/IJSObjCreation.h"

namespace {

class NullObjCreation final : public IJSObjCreation {
public:
    std::string GetKey(const std::string&) override { return "0"; }
};

}  // namespace

IJSObjCreation* IJSObjCreation::Instance() {
    static NullObjCreation creation;
    return &creation;
}
