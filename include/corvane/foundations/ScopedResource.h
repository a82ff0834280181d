// The scope guard: obtains a resource and releases it however the scope is left.
#pragma once

namespace Quillon {

/// The policy that does nothing.
template <class Resource>
struct NoOp {
    void operator()(Resource) const noexcept {} ///< nothing
};

/// Holds a resource for a scope: applies `ObtainPolicy` at construction and `ReleasePolicy` at destruction.
/// Not copyable; not thread-safe.
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

    /// Takes ownership of `held`. The previous resource is not released: call it only on a guard that holds
    /// null.
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
