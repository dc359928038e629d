-- The bundled example's next version, as the script that migrates it: the
-- README's tour imports the example database with this script after it and
-- compares the two models.
ALTER TABLE customer ADD COLUMN phone VARCHAR(20);

CREATE TABLE review (
    product_id  INTEGER NOT NULL REFERENCES product (id),
    customer_id INTEGER NOT NULL REFERENCES customer (id),
    stars       SMALLINT NOT NULL CHECK (stars BETWEEN 1 AND 5),
    PRIMARY KEY (product_id, customer_id)
);

DROP INDEX orders_by_customer;
