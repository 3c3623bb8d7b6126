"""The board in the browser: its folder is put together and served."""
