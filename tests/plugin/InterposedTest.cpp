// Operations of other libraries that the plug-in calls are defined here, in the program, where the plug-in finds them
// first: they fail when a test says so, or note what they are given, and hand on to the library's own.

#include "PropertyTest.h"

#include <dlfcn.h>

#include <optional>
#include <vector>

using namespace NQORVYX20;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* kNamespaceName = "_ZN7Pegasus7bundled16CIMNamespaceNameC1EPKc";
constexpr const char* kClient = "_ZN7Pegasus7bundled9CIMClientC1Ev";
constexpr const char* kToString = "_ZNK9NQORVYX209TCIMValue8ToStringB5cxx11Eh";

const char* gFailing = nullptr; // the constructor that throws
std::vector<int> gBases;        // those that values were written in

template <typename Operation>
Operation* NextOf(const char* symbol) {
    return reinterpret_cast<Operation*>(::dlsym(RTLD_NEXT, symbol));
}

void Construct(const char* constructor) {
    if (gFailing == constructor) {
        throw Pegasus::Exception("out of names");
    }
}

} // namespace

extern "C" {

// Constructors are called as these are, with the object as the first argument.
void ConstructNamespaceName(Pegasus::CIMNamespaceName* self,
                            const char* name) asm("_ZN7Pegasus7bundled16CIMNamespaceNameC1EPKc");
void ConstructClient(Pegasus::CIMClient* self) asm("_ZN7Pegasus7bundled9CIMClientC1Ev");

void ConstructNamespaceName(Pegasus::CIMNamespaceName* self, const char* name) {
    Construct(kNamespaceName);
    NextOf<void(Pegasus::CIMNamespaceName*, const char*)>(kNamespaceName)(self, name);
}

void ConstructClient(Pegasus::CIMClient* self) {
    Construct(kClient);
    NextOf<void(Pegasus::CIMClient*)>(kClient)(self);
}
}

std::string NQORVYX20::TCIMValue::ToString(unsigned char base) const {
    gBases.push_back(base);
    return NextOf<std::string(const TCIMValue*, unsigned char)>(kToString)(this, base);
}

namespace {

/// With a logger that keeps its messages.
class InterposedTest : public PropertyTest {
  protected:
    ~InterposedTest() override { gFailing = nullptr; }

    unsigned Allocate() {
        return StatusOf([] {
            TCimHTTPNamespaceProvider::GetInstance()->AllocateNamespace(
                {{"pluginNameQualDeclValue", TCIMValue("test plug-in")}}, false);
        });
    }
};

} // namespace

TEST_F(InterposedTest, ANamespaceNameThatCannotBeMadeIsLoggedAndRefused) {
    gFailing = kNamespaceName;
    EXPECT_EQ(Allocate(), TVYXStatusCode::eRemoteConnectionFailed);
    EXPECT_THAT(log_->Debug(), ElementsAre("TCimHTTPNamespace:Pegasus NSP Creation Fail: out of names"));
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(InterposedTest, AClientThatCannotBeMadeIsLoggedAndRefused) {
    gFailing = kClient;
    EXPECT_EQ(Allocate(), TVYXStatusCode::eRemoteConnectionFailed);
    EXPECT_THAT(log_->Debug(), ElementsAre("TCimHTTPNamespace:Pegasus Client Creation Fail: out of names"));
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(InterposedTest, ANamespaceIsAllocatedWhereNothingFails) {
    EXPECT_EQ(Allocate(), TVYXStatusCode::eSuccess);
    EXPECT_THAT(log_->Debug(), IsEmpty());
}

TEST_F(InterposedTest, EveryBaseIsHandedToTheValueAsItIs) {
    for (const int base : {0, 1, 2, 16, 37, 255}) {
        const Qualifiers qualifiers{{"BASE", Uint8(static_cast<unsigned char>(base))}};
        const TCimHTTPProperty property(Declare(Uint32(9), qualifiers));
        gBases.clear();
        property.ToStringWithBase(Uint32(9));
        EXPECT_THAT(gBases, ElementsAre(base));
    }
    gBases.clear();
    EXPECT_EQ(TCimHTTPProperty(Declare(Uint32(9))).ToStringWithBase(Uint32(9)), "9");
    EXPECT_THAT(gBases, ElementsAre(10));
}
