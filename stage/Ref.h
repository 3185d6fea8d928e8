#pragma once

#include <glib-object.h>

#include <utility>

namespace tarn::stage {

// Owns one reference to a GObject.
template <typename T> class Ref {
public:
    Ref() = default;
    Ref(Ref const& other)
        : m_object(other.m_object)
    {
        if (m_object)
            g_object_ref(m_object);
    }
    Ref(Ref&& other) noexcept
        : m_object(std::exchange(other.m_object, nullptr))
    {
    }
    ~Ref()
    {
        if (m_object)
            g_object_unref(m_object);
    }
    Ref& operator=(Ref other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }

    // Takes over a reference that the caller owns.
    static Ref adopt(T* object)
    {
        Ref ref;
        ref.m_object = object;
        return ref;
    }
    // Adds a reference of its own.
    static Ref share(T* object) { return adopt(static_cast<T*>(g_object_ref(object))); }

    T* get() const { return m_object; }

private:
    T* m_object { nullptr };
};

}
