#pragma once

/// Has the session bus looked for only where the environment promises one, from now on and by
/// everybody in this process: a search would end in one being started, and nobody else would be
/// on it. To be called before the application object is made, which already searches.
void neverStartABus();
