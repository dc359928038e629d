-- The bundled example database: a small order system, made into
-- build/examples/example.db at build time and imported by the README's main job.
CREATE TABLE customer (
    id        INTEGER PRIMARY KEY,
    name      VARCHAR(80) NOT NULL,
    email     VARCHAR(120) UNIQUE CHECK (email LIKE '%@%'),
    joined_on DATE DEFAULT CURRENT_DATE
);

CREATE TABLE product (
    id        INTEGER PRIMARY KEY,
    code      CHAR(12) NOT NULL UNIQUE,
    title     VARCHAR(200) NOT NULL,
    price     DECIMAL(10, 2) NOT NULL CHECK (price >= 0)
);

CREATE TABLE orders (
    id          INTEGER PRIMARY KEY,
    customer_id INTEGER NOT NULL REFERENCES customer (id) ON DELETE CASCADE,
    placed_at   TIMESTAMP NOT NULL,
    status      CHAR(1) NOT NULL DEFAULT 'N'
);

-- Each line belongs to its order: the order's key is part of the line's key.
CREATE TABLE order_line (
    order_id   INTEGER NOT NULL REFERENCES orders (id),
    line_no    SMALLINT NOT NULL,
    product_id INTEGER NOT NULL REFERENCES product (id),
    quantity   INTEGER NOT NULL CHECK (quantity > 0),
    PRIMARY KEY (order_id, line_no)
);

CREATE INDEX orders_by_customer ON orders (customer_id, placed_at DESC);

CREATE VIEW open_orders AS SELECT * FROM orders WHERE status = 'N';

CREATE TRIGGER order_line_positive BEFORE INSERT ON order_line
BEGIN
    SELECT RAISE(ABORT, 'quantity must be positive') WHERE NEW.quantity <= 0;
END;
