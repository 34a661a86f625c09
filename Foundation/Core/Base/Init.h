// CT_Init and CT_Exit: static objects whose life runs a class's start-up and shut-down routine.
// All of them are defined, in order, in Module/StartUp.cpp.
#ifndef FOUNDATION_CORE_BASE_INIT_H
#define FOUNDATION_CORE_BASE_INIT_H

class CT_Init {
public:
    using t_Routine = void (*)();

    // Calls the routine at once unless it is null. The names only say whose it is.
    explicit CT_Init(t_Routine routine) { v_Call(routine); }
    CT_Init(const char16_t* /*class_name*/, const char16_t* /*routine_name*/, t_Routine routine) {
        v_Call(routine);
    }

private:
    static void v_Call(t_Routine routine) {
        if (routine != nullptr) routine();
    }
};

class CT_Exit {
public:
    using t_Routine = void (*)();

    // The names are borrowed and serve identification only.
    constexpr CT_Exit(const char16_t* class_name, const char16_t* routine_name, t_Routine routine)
        : class_name_(class_name), routine_name_(routine_name), routine_(routine) {}
    // A copy calls the routine too when it is destroyed.
    CT_Exit(const CT_Exit&) = default;
    CT_Exit& operator=(const CT_Exit&) = default;
    // Calls the routine unless it is null.
    ~CT_Exit() {
        if (routine_ != nullptr) routine_();
    }

private:
    [[maybe_unused]] const char16_t* class_name_;
    [[maybe_unused]] const char16_t* routine_name_;
    t_Routine routine_;
};

#endif
