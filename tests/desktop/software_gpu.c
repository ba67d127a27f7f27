// Stands in for the graphics card that Wayfire does not start without: preloaded into it, it has
// wlroots draw with Mesa's software renderer into pictures in ordinary memory. Nothing of what is
// drawn, nor of how clients are treated, is changed by it; a card's buffers would be shared with
// its driver instead. It knows wlroots 0.15.
#define WLR_USE_UNSTABLE

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GLES2/gl2.h>
#include <fcntl.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <wlr/backend.h>
#include <wlr/render/allocator.h>
#include <wlr/render/dmabuf.h>
#include <wlr/render/egl.h>
#include <wlr/render/gles2.h>
#include <wlr/types/wlr_buffer.h>

enum { xrgb = 0x34325258, argb = 0x34325241 };  // the names of formats: XR24 and AR24

// ---- A card that has a descriptor, and nothing behind it

int wlr_backend_get_drm_fd(struct wlr_backend* backend) {
  (void)backend;
  static int descriptor = -1;
  if (descriptor < 0) descriptor = open("/dev/null", O_RDWR | O_CLOEXEC);
  return descriptor;
}

// ---- Drawing

static EGLContext makeContext(EGLDisplay display) {
  const EGLint two[] = {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};
  eglBindAPI(EGL_OPENGL_ES_API);
  return eglCreateContext(display, EGL_NO_CONFIG_KHR, EGL_NO_CONTEXT, two);
}

struct wlr_renderer* wlr_gles2_renderer_create_with_drm_fd(int descriptor) {
  (void)descriptor;
  EGLDisplay display = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, NULL, NULL);
  if (!eglInitialize(display, NULL, NULL)) return NULL;
  struct wlr_egl* egl = wlr_egl_create_with_context(display, makeContext(display));
  if (egl == NULL) return NULL;
  // The renderer insists on it; it is taken care of below.
  egl->exts.EXT_image_dma_buf_import = true;
  wlr_drm_format_set_finish(&egl->dmabuf_texture_formats);
  wlr_drm_format_set_finish(&egl->dmabuf_render_formats);
  const uint64_t linear = 0;
  wlr_drm_format_set_add(&egl->dmabuf_render_formats, xrgb, linear);
  wlr_drm_format_set_add(&egl->dmabuf_render_formats, argb, linear);
  return wlr_gles2_renderer_create(egl);
}

// No client can share a buffer with a card that is none.
const struct wlr_drm_format_set* wlr_egl_get_dmabuf_texture_formats(struct wlr_egl* egl) {
  (void)egl;
  return NULL;
}

// What would be memory of the card is a texture; the attributes only pass its size on.
EGLImageKHR wlr_egl_create_image_from_dmabuf(struct wlr_egl* egl,
                                             struct wlr_dmabuf_attributes* attributes,
                                             bool* isExternal) {
  GLuint texture = 0;
  glGenTextures(1, &texture);
  glBindTexture(GL_TEXTURE_2D, texture);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
  glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, attributes->width, attributes->height, 0, GL_RGBA,
               GL_UNSIGNED_BYTE, NULL);
  *isExternal = false;
  EGLImageKHR image = egl->procs.eglCreateImageKHR(
      egl->display, egl->context, EGL_GL_TEXTURE_2D_KHR, (EGLClientBuffer)(uintptr_t)texture, NULL);
  // The picture lives on in the image.
  glBindTexture(GL_TEXTURE_2D, 0);
  glDeleteTextures(1, &texture);
  if (image == EGL_NO_IMAGE_KHR) fprintf(stderr, "software_gpu: no image, %#x\n", eglGetError());
  return image;
}

// ---- Buffers

struct Buffer {
  struct wlr_buffer base;
  uint32_t format;
};

static void destroyBuffer(struct wlr_buffer* buffer) { free(buffer); }

static bool describeBuffer(struct wlr_buffer* buffer, struct wlr_dmabuf_attributes* attributes) {
  *attributes = (struct wlr_dmabuf_attributes){.width = buffer->width,
                                               .height = buffer->height,
                                               .format = ((struct Buffer*)buffer)->format,
                                               .n_planes = 1,
                                               .stride = {(uint32_t)buffer->width * 4},
                                               .fd = {-1}};
  return true;
}

static const struct wlr_buffer_impl bufferFunctions = {.destroy = destroyBuffer,
                                                       .get_dmabuf = describeBuffer};

static struct wlr_buffer* createBuffer(struct wlr_allocator* allocator, int width, int height,
                                       const struct wlr_drm_format* format) {
  (void)allocator;
  struct Buffer* buffer = calloc(1, sizeof *buffer);
  wlr_buffer_init(&buffer->base, &bufferFunctions, width, height);
  buffer->format = format->format;
  return &buffer->base;
}

static void destroyAllocator(struct wlr_allocator* allocator) { free(allocator); }

struct wlr_allocator* wlr_allocator_autocreate(struct wlr_backend* backend,
                                               struct wlr_renderer* renderer) {
  (void)backend;
  (void)renderer;
  static const struct wlr_allocator_interface functions = {.create_buffer = createBuffer,
                                                           .destroy = destroyAllocator};
  struct wlr_allocator* allocator = calloc(1, sizeof *allocator);
  wlr_allocator_init(allocator, &functions, WLR_BUFFER_CAP_DMABUF);
  return allocator;
}
