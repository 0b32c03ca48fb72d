#pragma once

#include "host/base/Platform.h"

#include <cstddef>
#include <cstring>
#include <iosfwd>
#include <list>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

/// The containers and owners of the interface. They are the standard library's containers over
/// Platform::malloc_alloc; being types of their own, they give the exported names a form that does
/// not depend on the standard library in use.
namespace Corvid::Templates {

/// Makes a standard allocator of an allocation policy such as Platform::malloc_alloc.
template <class T, class Policy> class allocator {
public:
    using value_type = T;

    allocator() noexcept = default;
    template <class U> allocator(const allocator<U, Policy>&) noexcept {}
    /// The same allocator for another type.
    template <class U> struct rebind { using other = allocator<U, Policy>; };

    T* allocate(std::size_t count) {
        if (count > static_cast<std::size_t>(-1) / sizeof(T)) {
            throw std::bad_alloc();
        }
        return static_cast<T*>(Policy::allocate(count * sizeof(T)));
    }
    void deallocate(T* memory, std::size_t count) noexcept {
        Policy::deallocate(memory, count * sizeof(T));
    }

    friend bool operator==(const allocator&, const allocator&) noexcept { return true; }
    friend bool operator!=(const allocator&, const allocator&) noexcept { return false; }
};

/// What a string needs to know of its code units; they compare as unsigned numbers.
template <class Unit> struct char_traits {
    using char_type = Unit;
    using int_type = unsigned long;
    using off_type = std::streamoff;
    using pos_type = std::streampos;
    using state_type = std::mbstate_t;

    static void assign(Unit& to, const Unit& from) noexcept { to = from; }
    static Unit* assign(Unit* to, std::size_t count, Unit unit) noexcept {
        for (std::size_t i = 0; i != count; ++i) {
            to[i] = unit;
        }
        return to;
    }
    static bool eq(Unit a, Unit b) noexcept { return a == b; }
    static bool lt(Unit a, Unit b) noexcept { return a < b; }
    static int compare(const Unit* a, const Unit* b, std::size_t count) noexcept {
        for (std::size_t i = 0; i != count; ++i) {
            if (a[i] != b[i]) {
                return a[i] < b[i] ? -1 : 1;
            }
        }
        return 0;
    }
    static std::size_t length(const Unit* text) noexcept {
        std::size_t count = 0;
        while (text[count] != 0) {
            ++count;
        }
        return count;
    }
    static const Unit* find(const Unit* text, std::size_t count, const Unit& unit) noexcept {
        for (std::size_t i = 0; i != count; ++i) {
            if (text[i] == unit) {
                return text + i;
            }
        }
        return nullptr;
    }
    static Unit* move(Unit* to, const Unit* from, std::size_t count) noexcept {
        return count == 0 ? to : static_cast<Unit*>(std::memmove(to, from, count * sizeof(Unit)));
    }
    static Unit* copy(Unit* to, const Unit* from, std::size_t count) noexcept {
        return count == 0 ? to : static_cast<Unit*>(std::memcpy(to, from, count * sizeof(Unit)));
    }
    static Unit to_char_type(int_type value) noexcept { return static_cast<Unit>(value); }
    static int_type to_int_type(Unit unit) noexcept { return unit; }
    static bool eq_int_type(int_type a, int_type b) noexcept { return a == b; }
    static int_type eof() noexcept { return static_cast<int_type>(-1); }
    static int_type not_eof(int_type value) noexcept { return value == eof() ? 0 : value; }
};

template <class T, class Policy = Platform::malloc_alloc>
class vector : public std::vector<T, allocator<T, Policy>> {
public:
    using std::vector<T, allocator<T, Policy>>::vector;
};

template <class T, class Policy = Platform::malloc_alloc>
class list : public std::list<T, allocator<T, Policy>> {
public:
    using std::list<T, allocator<T, Policy>>::list;
};

template <class Key, class T, class Less = std::less<Key>, class Policy = Platform::malloc_alloc>
class map : public std::map<Key, T, Less, allocator<std::pair<const Key, T>, Policy>> {
public:
    using std::map<Key, T, Less, allocator<std::pair<const Key, T>, Policy>>::map;
};

/// Text of code units of any type.
template <class Unit, class Traits = char_traits<Unit>, class Policy = Platform::malloc_alloc>
class basic_string : public std::basic_string<Unit, Traits, allocator<Unit, Policy>> {
public:
    using Base = std::basic_string<Unit, Traits, allocator<Unit, Policy>>;
    using Base::Base;
    using Base::operator=;

    basic_string() = default;
    basic_string(const Base& text) : Base(text) {}
    basic_string(Base&& text) noexcept : Base(std::move(text)) {}
};

/// Owns one object and hands it over by moving; deletes it with the operator delete of its class.
template <class T> class auto_ptr {
public:
    using element_type = T;

    auto_ptr() noexcept = default;
    explicit auto_ptr(T* object) noexcept : object_(object) {}
    auto_ptr(auto_ptr&& other) noexcept : object_(other.release()) {}
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    auto_ptr(auto_ptr<U>&& other) noexcept : object_(other.release()) {}
    auto_ptr(const auto_ptr&) = delete;
    ~auto_ptr() { delete object_; }

    auto_ptr& operator=(auto_ptr&& other) noexcept {
        reset(other.release());
        return *this;
    }
    auto_ptr& operator=(const auto_ptr&) = delete;

    T* get() const noexcept { return object_; }
    T& operator*() const noexcept { return *object_; }
    T* operator->() const noexcept { return object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }

    /// Gives the object up; the caller owns it.
    T* release() noexcept { return std::exchange(object_, nullptr); }

    void reset(T* object = nullptr) noexcept {
        if (T* old = std::exchange(object_, object); old != object) {
            delete old;
        }
    }

private:
    T* object_ = nullptr;
};

/// A reference count that threads may share.
class LockedCounter {
public:
    void increment() noexcept { Platform::Synchronization::interlockedIncrement(count_); }
    /// @return true when the last owner is gone.
    bool decrement() noexcept {
        return Platform::Synchronization::interlockedDecrement(count_) == 0;
    }

private:
    volatile long count_ = 1;
};

/// Shares one object; the last owner deletes it.
template <class T, class Counter = LockedCounter> class SharedPtr {
public:
    using element_type = T;

    SharedPtr() noexcept = default;
    explicit SharedPtr(auto_ptr<T> object) {
        if (object) {
            counter_ = new (Platform::malloc_alloc::allocate(sizeof(Counter))) Counter;
            object_ = object.release();
        }
    }
    /// Owns the object at once: it is deleted if there is no memory for the count.
    explicit SharedPtr(T* object) : SharedPtr(auto_ptr<T>(object)) {}
    SharedPtr(const SharedPtr& other) noexcept : object_(other.object_), counter_(other.counter_) {
        share();
    }
    SharedPtr(SharedPtr&& other) noexcept
        : object_(std::exchange(other.object_, nullptr)),
          counter_(std::exchange(other.counter_, nullptr)) {}
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    SharedPtr(const SharedPtr<U, Counter>& other) noexcept
        : object_(other.object_), counter_(other.counter_) {
        share();
    }
    ~SharedPtr() { drop(); }

    SharedPtr& operator=(SharedPtr other) noexcept {
        std::swap(object_, other.object_);
        std::swap(counter_, other.counter_);
        return *this;
    }

    T* get() const noexcept { return object_; }
    T& operator*() const noexcept { return *object_; }
    T* operator->() const noexcept { return object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }

private:
    template <class U, class C> friend class SharedPtr;

    void share() noexcept {
        if (counter_ != nullptr) {
            counter_->increment();
        }
    }
    void drop() noexcept {
        if (counter_ != nullptr && counter_->decrement()) {
            delete object_;
            counter_->~Counter();
            Platform::malloc_alloc::deallocate(counter_, sizeof(Counter));
        }
    }

    T* object_ = nullptr;
    Counter* counter_ = nullptr;
};

} // namespace Corvid::Templates
