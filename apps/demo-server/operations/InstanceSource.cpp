#include "operations/InstanceSource.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace demo {

namespace {

class ClassSource : public InstanceSource {
  public:
    ClassSource(const Repository& repository, const Class& top)
        : repository_(repository), classes_(repository.WithSubclasses(top)) {}

    std::optional<SourcedInstance> Next() override {
        while (FindCursor()) {
            if (const Instance* const instance = cursors_.back()->Next()) {
                return SourcedInstance{&repository_, current_, PathOf(*current_, *instance), instance};
            }
            cursors_.pop_back();
        }
        return std::nullopt;
    }

  private:
    /// Opens the next class if need be; false when there is none.
    bool FindCursor() {
        while (cursors_.empty() && nextClass_ < classes_.size()) {
            current_ = classes_[nextClass_++];
            auto cursors = repository_.Open(*current_);
            cursors_.assign(std::make_move_iterator(cursors.rbegin()), std::make_move_iterator(cursors.rend()));
        }
        return !cursors_.empty();
    }

    const Repository& repository_;
    const std::vector<const Class*> classes_;
    std::size_t nextClass_ = 0;
    const Class* current_ = nullptr;
    std::vector<std::unique_ptr<InstanceCursor>> cursors_; // of that class, the next one last
};

class AssociationSource : public InstanceSource {
  public:
    AssociationSource(const Repository& repository, const Traversal& traversal, const ObjectPath& source)
        : repository_(repository) {
        traversal.VisitReferences(source, [this](const Class& declaration, const Instance& instance) {
            associations_.emplace_back(&declaration, instance);
        });
    }

    std::optional<SourcedInstance> Next() override {
        if (next_ == associations_.size()) {
            return std::nullopt;
        }
        const auto& [declaration, instance] = associations_[next_++];
        return SourcedInstance{&repository_, declaration, PathOf(*declaration, instance), &instance};
    }

    std::optional<std::uint64_t> Left() const override { return associations_.size() - next_; }

  private:
    const Repository& repository_;
    std::vector<std::pair<const Class*, Instance>> associations_;
    std::size_t next_ = 0;
};

/// Keeps the paths, and looks each object up when its turn comes, if objects are wanted.
class AssociatedSource : public InstanceSource {
  public:
    AssociatedSource(const Traversal& traversal, const ObjectPath& source, bool wantsObjects)
        : wantsObjects_(wantsObjects) {
        traversal.VisitAssociated(source, [this](const LocatedObject& object) { objects_.push_back(object); });
    }

    std::optional<SourcedInstance> Next() override {
        while (next_ < objects_.size()) {
            const LocatedObject& object = objects_[next_++];
            const Repository& where = *object.repository;
            instance_ = wantsObjects_ ? where.Find(object.path) : std::nullopt;
            if (instance_ || !wantsObjects_) { // it can have gone since, as processes do
                return SourcedInstance{&where, where.GetSchema().FindClass(object.path.className), object.path,
                                       instance_ ? &*instance_ : nullptr};
            }
        }
        return std::nullopt;
    }

    std::optional<std::uint64_t> Left() const override { return objects_.size() - next_; }

  private:
    const bool wantsObjects_;
    std::vector<LocatedObject> objects_;
    std::size_t next_ = 0;
    std::optional<Instance> instance_;
};

} // namespace

std::unique_ptr<InstanceSource> InstancesOf(const Repository& repository, const Class& top) {
    return std::make_unique<ClassSource>(repository, top);
}

std::unique_ptr<InstanceSource> ReferencesTo(const Repository& repository, const Traversal& traversal,
                                             const ObjectPath& source) {
    return std::make_unique<AssociationSource>(repository, traversal, source);
}

std::unique_ptr<InstanceSource> AssociatedWith(const Traversal& traversal, const ObjectPath& source) {
    return std::make_unique<AssociatedSource>(traversal, source, true);
}

std::unique_ptr<InstanceSource> PathsAssociatedWith(const Traversal& traversal, const ObjectPath& source) {
    return std::make_unique<AssociatedSource>(traversal, source, false);
}

} // namespace demo
