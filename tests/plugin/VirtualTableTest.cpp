// The plug-in's classes add slots after those of their interfaces, and nothing between them.

#include "../host/Slots.h"
#include "PluginTest.h"
#include "model/TCimHTTPInstance.h"
#include "model/TCimHTTPProperty.h"

using namespace NQORVYX20;

namespace {

/// Its operation takes the slot after the last one of its base.
template <typename Base>
class TFollowerOf : public Base {
  public:
    virtual void Follow() {}
};

} // namespace

TEST(VirtualTable, OwnersOfOtherElementsCanHandOutThemselves) {
    const auto canHandOutItself = [](const auto* element) {
        using Element = std::decay_t<decltype(*element)>;
        return std::is_base_of_v<boost::enable_shared_from_this<Element>, Element>;
    };
    EXPECT_TRUE(canHandOutItself(static_cast<TCimHTTPNamespace*>(nullptr)));
    EXPECT_TRUE(canHandOutItself(static_cast<TCimHTTPClass*>(nullptr)));
    EXPECT_TRUE(canHandOutItself(static_cast<TCimHTTPPropertyDecl*>(nullptr)));
    EXPECT_TRUE(canHandOutItself(static_cast<TCimHTTPMethodDecl*>(nullptr)));
    EXPECT_TRUE(canHandOutItself(static_cast<TCimHTTPParameterDecl*>(nullptr)));
    EXPECT_TRUE(canHandOutItself(static_cast<TCimHTTPQualifier*>(nullptr)));
    EXPECT_TRUE(canHandOutItself(static_cast<TCimHTTPQualifierDecl*>(nullptr)));
    EXPECT_FALSE(canHandOutItself(static_cast<TCimHTTPProperty*>(nullptr)));
    EXPECT_FALSE(canHandOutItself(static_cast<TCimHTTPNamespaceProvider*>(nullptr)));
    EXPECT_FALSE(canHandOutItself(static_cast<TCimHTTPInstance*>(nullptr))) << "its base does";
    EXPECT_TRUE(canHandOutItself(static_cast<TInmemInstance*>(nullptr)));
}

TEST(VirtualTable, TheProviderHasNothingBesides) { EXPECT_EQ(sizeof(TCimHTTPNamespaceProvider), sizeof(void*)); }

TEST(VirtualTable, TheNamespaceAppendsItsAssignmentAndNothingElse) {
    constexpr std::size_t kOperations = 16;
    ExpectSlots(kFirstSlot + kOperations,
                static_cast<ICIMNamespace& (TCimHTTPNamespace::*)(ICIMNamespace&)>(&TCimHTTPNamespace::operator=),
                &TFollowerOf<TCimHTTPNamespace>::Follow);
}

TEST(VirtualTable, TheClassAppendsTheOperationsOfItsSecondBaseAndNothingElse) {
    constexpr std::size_t kOperations = 40;
    using Declaration = boost::shared_ptr<ICIMQualifierDecl const>;
    using Qualifier = boost::shared_ptr<ICIMQualifier>;
    using Allocate = Qualifier (TCimHTTPClass::*)(Declaration, const TCIMValue&, TCIMContext) const;
    using AllocateWithFlavor =
        Qualifier (TCimHTTPClass::*)(Declaration, const TCIMValue&, ICIMQualifierDecl::EFlavor, TCIMContext) const;
    using Get = Qualifier (TCimHTTPClass::*)(const std::string&, TCIMContext) const;
    using GetIfThere = Qualifier (TCimHTTPClass::*)(const std::string&, bool&, TCIMContext) const;
    ExpectSlots(kFirstSlot + kOperations, &TCimHTTPClass::AddQualifier,
                static_cast<Allocate>(&TCimHTTPClass::AllocateQualifier),
                static_cast<AllocateWithFlavor>(&TCimHTTPClass::AllocateQualifier),
                static_cast<Get>(&TCimHTTPClass::GetQualifier), static_cast<GetIfThere>(&TCimHTTPClass::GetQualifier),
                &TCimHTTPClass::EnumerateQualifiers, &TFollowerOf<TCimHTTPClass>::Follow);
}

TEST(VirtualTable, TheInstanceKeepsTheSlotsOfItsInterfaceAndAppendsNothing) {
    static_assert(sizeof(TCimHTTPInstance) == sizeof(TInmemInstance), "the base keeps all that an instance has");
    ExpectSlots(kFirstSlot + 1, &TCimHTTPInstance::AddToNamespace);
    ExpectSlots(kFirstSlot + 16, &TFollowerOf<TCimHTTPInstance>::Follow);
}

TEST(VirtualTable, TheOtherElementsAppendNothing) {
    constexpr std::size_t kQualifierOperations = 6; // of every named element
    ExpectSlots(kFirstSlot + 17, &TFollowerOf<TCimHTTPProperty>::Follow);
    ExpectSlots(kFirstSlot + kQualifierOperations + 12, &TFollowerOf<TCimHTTPPropertyDecl>::Follow);
    ExpectSlots(kFirstSlot + 17, &TFollowerOf<TCimHTTPQualifier>::Follow);
    ExpectSlots(kFirstSlot + 16, &TFollowerOf<TCimHTTPQualifierDecl>::Follow);
    ExpectSlots(kFirstSlot + kQualifierOperations + 11, &TFollowerOf<TCimHTTPMethodDecl>::Follow);
    ExpectSlots(kFirstSlot + kQualifierOperations + 9, &TFollowerOf<TCimHTTPParameterDecl>::Follow);
}
