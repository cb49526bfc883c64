#include "app/menubar/layersurface.h"

#if TIMETRACKER_LAYERSHELL
#include <LayerShellQt/Window>
#include <QGuiApplication>
#include <QScreen>
#include <qguiapplication_platform.h>
#include <unistd.h>
#include <wayland-client.h>

#include <cstring>

using namespace Qt::StringLiterals;

namespace
{

QNativeInterface::QWaylandApplication *wayland()
{
    return qGuiApp->nativeInterface<QNativeInterface::QWaylandApplication>();
}

LayerShellQt::Window::Anchors anchors(Qt::Edges edges)
{
    using Layer = LayerShellQt::Window;
    Layer::Anchors anchors;
    anchors.setFlag(Layer::AnchorTop, edges.testFlag(Qt::TopEdge));
    anchors.setFlag(Layer::AnchorBottom, edges.testFlag(Qt::BottomEdge));
    anchors.setFlag(Layer::AnchorLeft, edges.testFlag(Qt::LeftEdge));
    anchors.setFlag(Layer::AnchorRight, edges.testFlag(Qt::RightEdge));
    return anchors;
}

/// Sway takes the keyboard back at once from a surface that does not insist on it. Under other
/// compositors a click elsewhere takes it only from one that does not.
LayerShellQt::Window::KeyboardInteractivity keyboardWish()
{
    return qEnvironmentVariableIsSet("SWAYSOCK")
               ? LayerShellQt::Window::KeyboardInteractivityExclusive
               : LayerShellQt::Window::KeyboardInteractivityOnDemand;
}

} // namespace

/// The keyboard as the compositor tells of it. Qt keeps quiet about what lasts but a moment.
class LayerSurface::Keyboard
{
public:
    explicit Keyboard(LayerSurface &owner)
        : m_owner(owner)
    {
        static constexpr wl_keyboard_listener Listener{
            .keymap = [](void *, wl_keyboard *, uint32_t, int32_t file,
                         uint32_t) { ::close(file); },
            .enter =
                [](void *self, wl_keyboard *, uint32_t, wl_surface *surface, wl_array *) {
                    auto &keyboard = *static_cast<Keyboard *>(self);
                    if (keyboard.m_hasHeardOfPresent && !keyboard.m_surface)
                        keyboard.m_surface = surface;
                },
            .leave =
                [](void *self, wl_keyboard *, uint32_t, wl_surface *surface) {
                    const auto &keyboard = *static_cast<Keyboard *>(self);
                    if (surface && surface == keyboard.m_surface)
                        Q_EMIT keyboard.m_owner.keyboardLeft();
                },
            .key = [](void *, wl_keyboard *, uint32_t, uint32_t, uint32_t, uint32_t) {},
            .modifiers = [](void *, wl_keyboard *, uint32_t, uint32_t, uint32_t, uint32_t,
                            uint32_t) {},
            .repeat_info = [](void *, wl_keyboard *, int32_t, int32_t) {},
        };
        // Qt has one where there is one; it is an error to ask for one where there is none.
        if (!wayland()->keyboard())
            return;
        m_keyboard = wl_seat_get_keyboard(wayland()->seat());
        wl_keyboard_add_listener(m_keyboard, &Listener, this);

        static constexpr wl_callback_listener AnswerListener{
            .done = [](void *self, wl_callback *,
                       uint32_t) { static_cast<Keyboard *>(self)->m_hasHeardOfPresent = true; },
        };
        m_answer = wl_display_sync(wayland()->display());
        wl_callback_add_listener(m_answer, &AnswerListener, this);
    }

    ~Keyboard()
    {
        if (m_answer)
            wl_callback_destroy(m_answer);
        if (m_keyboard)
            wl_keyboard_release(m_keyboard);
    }
    Q_DISABLE_COPY_MOVE(Keyboard)

private:
    LayerSurface &m_owner;
    wl_keyboard *m_keyboard = nullptr;
    wl_callback *m_answer = nullptr;
    /// Whether the compositor has told which surface had it before the window was shown.
    bool m_hasHeardOfPresent = false;
    /// The surface that got it first after that, which is the window's.
    wl_surface *m_surface = nullptr;
};

bool LayerSurface::isPossible()
{
    if (!wayland())
        return false;
    // On a queue of its own, so that no event of Qt's waits for it.
    wl_display *const display = wayland()->display();
    wl_event_queue *const queue = wl_display_create_queue(display);
    auto *const wrapper = static_cast<wl_display *>(wl_proxy_create_wrapper(display));
    wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(wrapper), queue);
    wl_registry *const registry = wl_display_get_registry(wrapper);

    static constexpr wl_registry_listener Listener{
        .global =
            [](void *found, wl_registry *, uint32_t, const char *name, uint32_t version) {
                // From this version on, a window may have the keyboard without keeping it.
                if (std::strcmp(name, "zwlr_layer_shell_v1") == 0 && version >= 4)
                    *static_cast<bool *>(found) = true;
            },
        .global_remove = [](void *, wl_registry *, uint32_t) {},
    };
    bool isFound = false;
    wl_registry_add_listener(registry, &Listener, &isFound);
    wl_display_roundtrip_queue(display, queue);
    wl_registry_destroy(registry);
    wl_proxy_wrapper_destroy(wrapper);
    wl_event_queue_destroy(queue);
    return isFound;
}

LayerSurface::LayerSurface(QQuickWindow &window, const PanelEdges &edges)
    : QObject(&window)
    , m_window(window)
    , m_keyboard(std::make_unique<Keyboard>(*this))
{
    auto *const layer = LayerShellQt::Window::get(&window);
    // Only now, as the window's creation, which is a part of this, brings it to the first screen.
    window.setScreen(QGuiApplication::screens().at(edges.screen));
    layer->setScope(u"tulo-time-tracker-panel"_s);
    layer->setLayer(LayerShellQt::Window::LayerTop);
    layer->setKeyboardInteractivity(keyboardWish());
    move(edges);
    // Qt would show it on another screen, as an ordinary window.
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, [this](const QScreen *screen) {
        if (screen == m_window.screen())
            m_window.close();
    });
}

LayerSurface::~LayerSurface() = default;

void LayerSurface::move(const PanelEdges &edges)
{
    auto *const layer = LayerShellQt::Window::get(&m_window);
    layer->setAnchors(anchors(edges.edges));
    layer->setMargins(edges.margins);
    layer->setExclusiveZone(edges.isBesideBars ? 0 : -1);
}

#else

class LayerSurface::Keyboard
{
};

bool LayerSurface::isPossible()
{
    return false;
}

LayerSurface::LayerSurface(QQuickWindow &window, const PanelEdges &)
    : QObject(&window)
    , m_window(window)
{
}

LayerSurface::~LayerSurface() = default;

void LayerSurface::move(const PanelEdges &) {}

#endif
