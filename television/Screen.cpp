// The picture and its place, behind one lock; who is told of a change is told without it.
#include "television/Screen.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "television/Geometry.h"

namespace television {
namespace {

constexpr TPTRect kPlane{0, 0, Television::kPlaneWidth, Television::kPlaneHeight};

void Call(const std::function<void()>& function) {
    if (function) function();
}

bool SameRatio(double a, double b) { return std::abs(a - b) < 0.001; }

bool Same(const TPTRect& a, const TPTRect& b) {
    return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}

}  // namespace

void Screen::Begin(std::uint64_t session) {
    std::shared_ptr<const Picture> before;
    std::shared_ptr<const Subtitles> subtitlesBefore;
    bool moved = false;
    {
        std::lock_guard lock(m_mutex);
        if (session < m_session) return;
        m_session = session;
        const TPTRect rectangle = Place();
        m_picture.swap(before);
        m_subtitles.swap(subtitlesBefore);
        moved = !Same(rectangle, Place());
    }
    if (before || subtitlesBefore) Call(pictureChanged);
    if (moved) Call(layoutChanged);
}

void Screen::Continue(std::uint64_t session) {
    std::lock_guard lock(m_mutex);
    m_session = std::max(m_session, session);
}

void Screen::Show(std::uint64_t session, std::shared_ptr<const Picture> picture) {
    bool aspect = false, moved = false;
    {
        std::lock_guard lock(m_mutex);
        if (session != m_session) return;
        const TPTRect rectangle = Place();
        aspect = !m_picture || !SameRatio(Ratio(*m_picture), Ratio(*picture));
        m_picture.swap(picture);
        moved = !Same(rectangle, Place());
    }
    Call(pictureChanged);
    if (moved) Call(layoutChanged);
    if (aspect) Call(aspectChanged);
}

void Screen::ShowSubtitles(std::uint64_t session, std::shared_ptr<const Subtitles> subtitles) {
    {
        std::lock_guard lock(m_mutex);
        if (session != m_session || (!subtitles && !m_subtitles)) return;
        m_subtitles.swap(subtitles);
    }
    Call(pictureChanged);
}

void Screen::ShowVideo(bool shown) {
    {
        std::lock_guard lock(m_mutex);
        if (m_videoShown == shown) return;
        m_videoShown = shown;
    }
    Call(pictureChanged);
}

void Screen::SetWindow(const TPTRect& window) { Move(window); }
void Screen::SetFullScreen() { Move(std::nullopt); }

void Screen::ForceAspectRatio(std::optional<double> ratio) {
    bool aspect = false, moved = false;
    {
        std::lock_guard lock(m_mutex);
        const TPTRect rectangle = Place();
        const auto before = std::exchange(m_forcedRatio, ratio);
        aspect = m_picture && !SameRatio(before.value_or(m_picture->aspectRatio), Ratio(*m_picture));
        moved = !Same(rectangle, Place());
    }
    if (moved) Call(layoutChanged);
    if (aspect) Call(aspectChanged);
}

void Screen::Move(std::optional<TPTRect> window) {
    {
        std::lock_guard lock(m_mutex);
        const TPTRect rectangle = Place();
        m_window = window;
        if (Same(rectangle, Place())) return;
    }
    Call(layoutChanged);
}

// Under the lock.
TPTRect Screen::Place() const {
    if (m_window) return *m_window;
    return m_picture ? Fit(kPlane, Ratio(*m_picture)) : kPlane;
}

std::shared_ptr<const Picture> Screen::CurrentPicture() const {
    std::lock_guard lock(m_mutex);
    return m_videoShown ? m_picture : nullptr;
}

std::shared_ptr<const Subtitles> Screen::CurrentSubtitles() const {
    std::lock_guard lock(m_mutex);
    return m_subtitles;
}

TPTRect Screen::Rectangle() const {
    std::lock_guard lock(m_mutex);
    return Place();
}

std::optional<double> Screen::AspectRatio() const {
    std::lock_guard lock(m_mutex);
    return m_picture ? std::optional(Ratio(*m_picture)) : std::nullopt;
}

}  // namespace television
