#include "interop/ProfileSearch.h"

#include "Failure.h"
#include "connection/ServerAssociations.h"
#include "connection/ServerInstances.h"
#include "connection/Session.h"
#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "interop/InteropNamespace.h"
#include "output/InstanceProperties.h"
#include "output/ValueTexts.h"
#include "text/WordList.h"

#include <algorithm>
#include <tuple>

namespace cimhttp {

namespace {

using NQORVYX20::ICIMInstance;
using NQORVYX20::TCIMContext;

constexpr const char* kProfileClass = "CIM_RegisteredProfile";
constexpr const char* kConformanceClass = "CIM_ElementConformsToProfile";

constexpr const char* kOtherOrganization = "1"; // of RegisteredOrganization: another property names it
constexpr unsigned char kDecimal = 10;

/// What a property says to people; empty for null and for one that there is not.
std::optional<std::string> TextOf(const ICIMInstance& instance, const std::string& name, const PluginAccess& access) {
    const auto property = FindProperty(instance, name);
    if (!property || property->GetValue(TCIMContext()).IsNull()) {
        return std::nullopt;
    }
    return ValueTexts(access).Of(instance, *property).Joined();
}

bool IsOtherOrganization(const ICIMInstance& instance) {
    const auto property = FindProperty(instance, "RegisteredOrganization");
    return property && property->GetValue(TCIMContext()).ToString(kDecimal) == kOtherOrganization;
}

std::optional<std::string> OrganizationOf(const ICIMInstance& instance, const PluginAccess& access) {
    const auto other = TextOf(instance, "OtherRegisteredOrganization", access);
    return other && IsOtherOrganization(instance) ? other : TextOf(instance, "RegisteredOrganization", access);
}

bool IsBefore(const RegisteredProfile& one, const RegisteredProfile& other) {
    return std::tie(one.organization, one.name, one.version, one.path) <
           std::tie(other.organization, other.name, other.version, other.path);
}

} // namespace

void ProfileSearch::Run() {
    VainAttempts attempts;
    for (const std::string& nameSpace : InteropNames()) {
        try {
            for (const auto& instance : ServerInstances(session_).In(nameSpace, kProfileClass)) {
                profiles_.push_back(ProfileOf(*instance, nameSpace));
            }
        } catch (const RemoteError& error) {
            attempts.Add(kProfileClass, nameSpace, error.what());
            continue;
        }
        std::sort(profiles_.begin(), profiles_.end(), IsBefore);
        for (RegisteredProfile& profile : profiles_) {
            FindCentralInstances(profile);
        }
        return;
    }
    throw Failure(Failure::kNotFound,
                  "the server at " + session_.Server() + " does not tell its profiles: " + attempts.Text());
}

RegisteredProfile ProfileSearch::ProfileOf(const ICIMInstance& instance, const std::string& nameSpace) const {
    const PluginAccess& access = session_.Access();
    return {OrganizationOf(instance, access), TextOf(instance, "RegisteredName", access),
            TextOf(instance, "RegisteredVersion", access), PathOf(instance, nameSpace), std::nullopt};
}

void ProfileSearch::FindCentralInstances(RegisteredProfile& profile) {
    AssociationQuery query;
    query.path = profile.path;
    query.associationClass = kConformanceClass;
    query.role = "ConformantStandard";
    query.resultRole = "ManagedElement";
    try {
        std::vector<std::string> paths;
        for (const auto& path : ServerAssociations(session_).RelatedPaths(query)) {
            paths.push_back(path.GetPath());
        }
        std::sort(paths.begin(), paths.end());
        profile.centralInstances = std::move(paths);
    } catch (const LoginFailure&) {
        throw;
    } catch (const Failure& failure) {
        if (failure.Status() == Failure::kConnection) {
            throw;
        }
        firstFailure_ = ++unknownCount_ == 1 ? failure.what() : firstFailure_;
    }
}

std::string ProfileSearch::Remark() const {
    return unknownCount_ == 0 ? std::string()
                              : "the central instances of " + Counted(unknownCount_, "profile", "profiles") +
                                    " are not known; the first: " + firstFailure_;
}

} // namespace cimhttp
