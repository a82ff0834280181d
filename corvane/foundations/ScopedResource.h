// The scope guard: what it obtained it releases, on every way out of the scope.
#pragma once

namespace Quillon {

/// The policy that does nothing.
template <class Resource>
struct NoOp {
    void operator()(Resource) const noexcept {} ///< nothing
};

/// Holds a resource for the length of a scope: applies `ObtainPolicy` at construction and `ReleasePolicy` at
/// the end. Never copied; for one thread.
template <class Resource, class ReleasePolicy, class ObtainPolicy>
class ScopedResource {
public:
    /// Obtains `held`.
    explicit ScopedResource(Resource held) : owned(true), resource(held) { ObtainPolicy()(resource); }
    ScopedResource(const ScopedResource&) = delete;
    ScopedResource& operator=(const ScopedResource&) = delete;

    virtual ~ScopedResource() {
        if (!owned)
            return;
        owned = false;
        ReleasePolicy()(resource);
    }

    /// Takes over `held`. What the guard held before is not released: it is for a guard that holds null.
    void Attach(Resource held) {
        owned = false;
        resource = held;
        owned = true;
    }

    /// What the guard holds.
    Resource Get() const { return resource; }

private:
    bool owned;
    Resource resource;
};

} // namespace Quillon
