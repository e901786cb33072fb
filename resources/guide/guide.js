// Puts the links to all pages on top of each.
const pages = {
  "index": "Overview",
  "main-window": "Main window",
  "task-form": "Task form",
  "contacts": "Contacts",
  "earlier-versions": "Earlier versions",
  "cloud": "Cloud",
  "messages": "Messages",
  "sent-messages": "Sent messages",
  "message-settings": "Message settings",
  "notes": "Notes",
  "whiteboard": "Whiteboard",
};
document.addEventListener("DOMContentLoaded", () => {
  const nav = document.createElement("nav");
  for (const [name, title] of Object.entries(pages)) {
    const link = document.createElement("a");
    link.href = name + ".html";
    link.textContent = title;
    nav.append(link, " ");
  }
  document.body.prepend(nav);
});
