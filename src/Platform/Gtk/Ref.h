#pragma once

#include <glib-object.h>

#include <utility>

namespace tarn::gtk {

// Owns one reference to a GObject. Made by the three functions below, on the line that gets the object.
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
    Ref& operator=(Ref other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~Ref()
    {
        if (m_object)
            g_object_unref(m_object);
    }

    T* get() const { return m_object; }
    explicit operator bool() const { return m_object != nullptr; }

    // Takes over a reference that the caller owns ("transfer full").
    static Ref adopt(T* object)
    {
        Ref ref;
        ref.m_object = object;
        return ref;
    }

private:
    T* m_object { nullptr };
};

template <typename T> Ref<T> adopt(T* object)
{
    return Ref<T>::adopt(object);
}

// Takes a new, floating object: widgets.
template <typename T> Ref<T> sink(T* object)
{
    return Ref<T>::adopt(static_cast<T*>(g_object_ref_sink(object)));
}

// Keeps an object that belongs to somebody else ("transfer none").
template <typename T> Ref<T> share(T* object)
{
    return Ref<T>::adopt(static_cast<T*>(g_object_ref(object)));
}

}
