#include "Foundation/Core/Version/AppVersion.h"

#include <atomic>
#include <iterator>

#include "Foundation/Core/Base/CriticalSection.h"

namespace {

const char16_t* LabelOf(unsigned int beta_level) {
    constexpr const char16_t* kLabels[] = {u"",     u" Beta", u" Pre-Release", u" RC1",
                                           u" RC2", u" RC",   u" Preview"};
    return beta_level < std::size(kLabels) ? kLabels[beta_level] : u"";
}

constinit CT_CriticalSection section;  // guards the texts of all objects

}  // namespace

// The texts are left behind: another thread may be building them.
CT_AppVersion& CT_AppVersion::operator=(const CT_AppVersion& other) noexcept {
    edition_ = other.edition_;
    major_ = other.major_;
    minor_ = other.minor_;
    maintenance_ = other.maintenance_;
    build_ = other.build_;
    beta_level_ = other.beta_level_;
    short_name_ = other.short_name_;
    long_name_ = other.long_name_;
    texts_stale_ = TRUE;
    return *this;
}

void CT_AppVersion::v_Init() {
    edition_ = 7;
    major_ = 7;
    minor_ = 0;
    maintenance_ = 0;
    build_ = 615;
    beta_level_ = 0;
    texts_stale_ = TRUE;
}

// Texts once built are read without the lock: whoever sees the mark sees them too.
void CT_AppVersion::v_Update() const {
    const std::atomic_ref<BOOL> stale(texts_stale_);
    if (!stale.load(std::memory_order_acquire)) return;
    const CT_CriticalSectionMarker lock(section);
    if (!stale.load(std::memory_order_relaxed)) return;
    product_version_.v_Format(u"%d.%d.%d.%d%s%s", major_, minor_, maintenance_, build_,
                              LabelOf(beta_level_), u"");
    product_edition_.v_Format(u"Edition %d Build %d", edition_, build_);
    stale.store(FALSE, std::memory_order_release);
}

const CT_UString* CT_AppVersion::pcco_GetProductVersion() const {
    v_Update();
    return &product_version_;
}

const CT_UString* CT_AppVersion::pcco_GetProductEdition() const {
    v_Update();
    return &product_edition_;
}

void CT_AppVersion::v_SetShortProductName(const CT_UString* name) {
    short_name_.v_Set(name);
}

void CT_AppVersion::v_SetLongProductName(const CT_UString* name) {
    long_name_.v_Set(name);
}
