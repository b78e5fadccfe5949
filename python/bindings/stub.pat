# Records compare by value and have no hash; the type checker's idea of `object` has one.
\.__hash__$:
    __hash__: None  # type: ignore[assignment]
